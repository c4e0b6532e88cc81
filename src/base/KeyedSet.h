// Things that are found by their key: what the tree and the registries are built on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

#include "base/SharedText.h"

/// Holds things that each have a key, in the order in which they were added, and adds, finds and
/// gives them back in constant time. A `Thing` can be moved, and is empty when it is made of
/// nothing. `Keys` says which are empty, what a thing's key is and when two keys are the same; what
/// is the same must be so for hashIgnoringCase():
///
///     struct Keys {
///         static bool isEmpty(const Thing& thing);
///         static const SharedText& keyOf(const Thing& thing);
///         static bool equal(std::string_view a, std::string_view b);
///     };
///
/// A thing keeps its place, a number, as long as it is in the set, and its place stays free when it
/// is taken out: it can be put back, and the order is what it was. Only compact() changes places.
///
/// The places of the things stand in one flat table, searched from the place that the hash names
/// on, with the hash beside each: neither growing nor passing over other things touches these.
/// With hundreds of thousands of them, which no cache holds, that is what adding and finding cost.
template <typename Thing, typename Keys>
class KeyedSet {
    using Things = std::deque<Thing>;

 public:
    using Place = std::uint32_t;

    /// A thing that was taken out, and where it stood; empty when there was none.
    struct Taken {
        Thing thing;
        Place place = 0;
    };

    /// Walks the things as they were added.
    class Iterator {
     public:
        Iterator(const Things& things, std::size_t place) : things_(&things), place_(place) {}
        const Thing& operator*() const { return (*things_)[place_]; }
        Iterator& operator++() {
            do
                ++place_;
            while (place_ < things_->size() && Keys::isEmpty(**this));
            return *this;
        }
        bool operator==(const Iterator&) const = default;

     private:
        const Things* things_;
        std::size_t place_;
    };

    std::size_t size() const { return things_.size() - holes_; }
    Iterator begin() const { return ++Iterator(things_, std::size_t{0} - 1); }
    Iterator end() const { return Iterator(things_, things_.size()); }

    /// The thing with the key, or null; good until the next one is added.
    const Thing* find(const SharedText& key) const {
        if (slots_.empty()) return nullptr;
        const Slot& slot = slots_[slotOf(key)];
        return slot.isEmpty() ? nullptr : &things_[slot.place];
    }

    /// False, and nothing has changed, when the thing's key is taken.
    bool add(Thing&& thing) {
        if (size() + 1 > slots_.size() / 3 * 2) makeRoom();
        Slot& slot = slots_[slotOf(Keys::keyOf(thing))];
        if (!slot.isEmpty()) return false;
        things_.push_back(std::move(thing));
        slot = {Keys::keyOf(things_.back()).hash(), endPlace() - 1};
        return true;
    }

    /// The place that the next thing will have.
    Place endPlace() const { return static_cast<Place>(things_.size()); }

    /// Takes the thing with the key out; what it gives is empty when there is none.
    Taken take(const SharedText& key) {
        if (find(key) == nullptr) return {};
        const Place place = freeSlot(key);
        Taken taken{std::move(things_[place]), place};
        things_[place] = Thing();
        for (++holes_; !things_.empty() && Keys::isEmpty(things_.back()); --holes_)
            things_.pop_back();
        return taken;
    }

    /// Puts a thing back at its place, which must be free, and its key too.
    void putBack(Taken&& taken) {
        if (size() + 1 > slots_.size() / 3 * 2) makeRoom();
        for (; things_.size() <= taken.place; ++holes_)
            things_.emplace_back();
        Thing& thing = things_[taken.place];
        thing = std::move(taken.thing);
        --holes_;
        slots_[slotOf(Keys::keyOf(thing))] = {Keys::keyOf(thing).hash(), taken.place};
    }

    /// The number of free places among the things.
    std::size_t holes() const { return holes_; }

    /// Takes the free places out, but for those at which something is to be put back: these are
    /// `reserved`, and are changed to what they are then. Takes time by the number of all places.
    void compact(std::vector<Place*> reserved) {
        std::ranges::sort(reserved, {}, [](const Place* place) { return *place; });
        auto next = reserved.begin();
        std::vector<Place> places(things_.size());
        Things kept;
        for (Place place = 0; place < things_.size(); ++place) {
            const bool isReserved = next != reserved.end() && **next == place;
            if (Keys::isEmpty(things_[place]) && !isReserved) continue;
            places[place] = static_cast<Place>(kept.size());
            for (; next != reserved.end() && **next == place; ++next)
                **next = places[place];
            kept.push_back(std::move(things_[place]));
        }
        // Beyond the last thing, places are free anyway; they keep their distance.
        for (; next != reserved.end(); ++next)
            **next -= static_cast<Place>(things_.size() - kept.size());
        holes_ -= things_.size() - kept.size();
        things_ = std::move(kept);
        for (Slot& slot : slots_)
            if (!slot.isEmpty()) slot.place = places[slot.place];
    }

    /// Lets `change` give the thing with that key another one, which nothing has. Its place in
    /// the order stays.
    template <typename Change>
    void rekey(const SharedText& key, const Change& change) {
        const Place place = freeSlot(key);
        change();
        const SharedText& changed = Keys::keyOf(things_[place]);
        slots_[slotOf(changed)] = {changed.hash(), place};
    }

    /// Gives the memory back too.
    void clear() {
        slots_ = std::vector<Slot>();
        things_ = Things();
        holes_ = 0;
    }

 private:
    struct Slot {
        static constexpr Place nowhere = 0xFFFFFFFF;
        bool isEmpty() const { return place == nowhere; }

        std::uint32_t hash = 0;
        Place place = nowhere;
    };

    std::size_t mask() const { return slots_.size() - 1; }  // the size is a power of two
    std::size_t next(std::size_t slot) const { return (slot + 1) & mask(); }

    /// Where the key stands, or the empty slot where it would.
    std::size_t slotOf(const SharedText& key) const {
        const std::uint32_t hash = key.hash();
        std::size_t i = hash & mask();
        while (!slots_[i].isEmpty() &&
               (slots_[i].hash != hash || !Keys::equal(Keys::keyOf(things_[slots_[i].place]), key)))
            i = next(i);
        return i;
    }

    /// Gives the place of the thing with that key, which is not to be found any more.
    Place freeSlot(const SharedText& key) {
        std::size_t hole = slotOf(key);
        const Place place = slots_[hole].place;
        // What was pushed on past the hole moves up, so that a search that ends at an empty slot
        // has missed nothing.
        for (std::size_t i = next(hole); !slots_[i].isEmpty(); i = next(i)) {
            const std::size_t home = slots_[i].hash & mask();
            if (((i - home) & mask()) < ((i - hole) & mask())) continue;
            slots_[hole] = slots_[i];
            hole = i;
        }
        slots_[hole] = Slot();
        return place;
    }

    /// The table has got full.
    void makeRoom() {
        std::size_t slots = 16;
        while (slots / 2 <= size())
            slots *= 2;
        for (const Slot& old : std::exchange(slots_, std::vector<Slot>(slots))) {
            if (old.isEmpty()) continue;
            std::size_t i = old.hash & mask();
            while (!slots_[i].isEmpty())
                i = next(i);
            slots_[i] = old;
        }
    }

    std::vector<Slot> slots_;
    Things things_;
    std::size_t holes_ = 0;  // among the things
};
