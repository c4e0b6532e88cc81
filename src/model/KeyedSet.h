// Things that are found by their key: what the tree and the registries are built on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

/// Owns things that each have a key, and adds, finds and gives them back in constant time. The
/// things stay at their addresses. `Keys` says what a thing's key is and when two are the same:
///
///     struct Keys {
///         static std::string_view keyOf(const Thing& thing);
///         static std::size_t hash(std::string_view key);
///         static bool equal(std::string_view a, std::string_view b);
///     };
///
/// One flat table, searched from the place that the hash names on, with the hash beside each
/// pointer: neither growing nor passing over other things touches these. With hundreds of
/// thousands of them, which no cache holds, that is what adding and finding cost.
template <typename T, typename Keys>
class KeyedSet {
 public:
    std::size_t size() const { return size_; }

    /// Makes room for so many more things at once.
    void reserve(std::size_t more) {
        if (fits(size_ + more)) return;
        std::size_t slots = 16;
        while (!fits(size_ + more, slots))
            slots *= 2;
        rehash(slots);
    }

    /// The thing with the key, or null.
    T* find(std::string_view key) const {
        if (slots_.empty()) return nullptr;
        return slots_[placeOf(key, hashOf(key))].thing.get();
    }

    /// The thing at its new home; null, and the thing is gone, when its key is taken.
    T* add(std::unique_ptr<T> thing) {
        reserve(1);
        const std::string_view key = Keys::keyOf(*thing);
        const std::uint32_t hash = hashOf(key);
        Slot& slot = slots_[placeOf(key, hash)];
        if (slot.thing != nullptr) return nullptr;
        slot = {hash, std::move(thing)};
        ++size_;
        return slot.thing.get();
    }

    /// Gives the thing with the key back; null when there is none.
    std::unique_ptr<T> take(std::string_view key) {
        if (slots_.empty()) return nullptr;
        std::size_t hole = placeOf(key, hashOf(key));
        std::unique_ptr<T> taken = std::move(slots_[hole].thing);
        if (taken == nullptr) return nullptr;
        --size_;
        // What was pushed on past the hole moves up, so that a search that ends at an empty slot
        // has missed nothing.
        for (std::size_t i = next(hole); slots_[i].thing != nullptr; i = next(i)) {
            const std::size_t home = slots_[i].hash & mask();
            if (((i - home) & mask()) < ((i - hole) & mask())) continue;
            slots_[hole] = std::move(slots_[i]);
            hole = i;
        }
        return taken;
    }

    /// Gives the table's memory back too.
    void clear() {
        slots_ = std::vector<Slot>();
        size_ = 0;
    }

 private:
    struct Slot {
        std::uint32_t hash = 0;
        std::unique_ptr<T> thing;
    };

    static std::uint32_t hashOf(std::string_view key) {
        const std::uint64_t hash = Keys::hash(key);
        return static_cast<std::uint32_t>(hash ^ (hash >> 32U));
    }

    static bool fits(std::size_t things, std::size_t slots) { return things * 3 <= slots * 2; }
    bool fits(std::size_t things) const { return fits(things, slots_.size()); }
    std::size_t mask() const { return slots_.size() - 1; }  // the size is a power of two
    std::size_t next(std::size_t place) const { return (place + 1) & mask(); }

    /// Where the key stands, or the empty slot where it would.
    std::size_t placeOf(std::string_view key, std::uint32_t hash) const {
        std::size_t place = hash & mask();
        while (slots_[place].thing != nullptr &&
               (slots_[place].hash != hash || !Keys::equal(Keys::keyOf(*slots_[place].thing), key)))
            place = next(place);
        return place;
    }

    void rehash(std::size_t slots) {
        std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots));
        for (Slot& slot : old) {
            if (slot.thing == nullptr) continue;
            std::size_t place = slot.hash & mask();
            while (slots_[place].thing != nullptr)
                place = next(place);
            slots_[place] = std::move(slot);
        }
    }

    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};
