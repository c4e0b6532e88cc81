// A container of elements that are found by key. The tree and the registries are built on it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

#include "base/SharedText.h"

/// Holds elements in the order in which they were added. Each has a key. Adding, finding and
/// removing take constant time. An `Element` can be moved, and is empty when default-constructed.
/// `Keys` says which elements are empty, what the key of an element is, and which keys are equal;
/// equal keys must have equal hashIgnoringCase():
///
///     struct Keys {
///         static bool isEmpty(const Element& element);
///         static const SharedText& keyOf(const Element& element);
///         static bool equal(std::string_view a, std::string_view b);
///     };
///
/// An element keeps its place, a number, as long as it is in the set. The place stays free when the
/// element is taken out, so that it can be put back in the same order. Only compact() changes
/// places.
///
/// The hash table uses open addressing. It is a flat array of hashes and places, so that growing
/// and probing do not read the elements: with hundreds of thousands of elements, cache misses are
/// most of the cost.
template <typename Element, typename Keys>
class KeyedSet {
    using Elements = std::deque<Element>;

 public:
    using Place = std::uint32_t;

    /// An element that was taken out, and its place; the element is empty when there was none.
    struct Taken {
        Element element;
        Place place = 0;
    };

    /// Iterates over the elements in the order in which they were added.
    class Iterator {
     public:
        Iterator(const Elements& elements, std::size_t place)
            : elements_(&elements), place_(place) {}
        const Element& operator*() const { return (*elements_)[place_]; }
        Iterator& operator++() {
            do
                ++place_;
            while (place_ < elements_->size() && Keys::isEmpty(**this));
            return *this;
        }
        bool operator==(const Iterator&) const = default;

     private:
        const Elements* elements_;
        std::size_t place_;
    };

    std::size_t size() const { return elements_.size() - holes_; }
    Iterator begin() const { return ++Iterator(elements_, std::size_t{0} - 1); }
    Iterator end() const { return Iterator(elements_, elements_.size()); }

    /// The element with the key, or null. The pointer is valid until the next element is added.
    /// Fastest when elements are found in the order in which they were added.
    const Element* find(const SharedText& key) const {
        if (const Element* near = findNear(key)) return near;
        if (slots_.empty()) return nullptr;
        const Slot& slot = slots_[slotOf(key)];
        if (slot.isEmpty()) return nullptr;
        isInOrder_ = slot.place == found_ + 1;
        found_ = slot.place;
        return &elements_[found_];
    }

    /// Appends the element. Returns false, and changes nothing, when its key is taken.
    bool add(Element&& element) {
        if (size() + 1 > slots_.size() / 3 * 2) grow();
        Slot& slot = slots_[slotOf(Keys::keyOf(element))];
        if (!slot.isEmpty()) return false;
        elements_.push_back(std::move(element));
        slot = {Keys::keyOf(elements_.back()).hash(), endPlace() - 1};
        return true;
    }

    /// The place that the next added element gets.
    Place endPlace() const { return static_cast<Place>(elements_.size()); }

    /// Removes and returns the element with the key; returns an empty one when there is none.
    Taken take(const SharedText& key) {
        if (find(key) == nullptr) return {};
        const Place place = freeSlot(key);
        Taken taken{std::move(elements_[place]), place};
        elements_[place] = Element();
        for (++holes_; !elements_.empty() && Keys::isEmpty(elements_.back()); --holes_)
            elements_.pop_back();
        return taken;
    }

    /// Puts an element back at its place. The place and the key must be free.
    void putBack(Taken&& taken) {
        if (size() + 1 > slots_.size() / 3 * 2) grow();
        for (; elements_.size() <= taken.place; ++holes_)
            elements_.emplace_back();
        Element& element = elements_[taken.place];
        element = std::move(taken.element);
        --holes_;
        slots_[slotOf(Keys::keyOf(element))] = {Keys::keyOf(element).hash(), taken.place};
    }

    /// The number of free places between the elements.
    std::size_t holes() const { return holes_; }

    /// Removes the free places, except those in `reserved`, which elements may be put back to. The
    /// numbers in `reserved` are updated to the new places. Takes time proportional to the number
    /// of all places.
    void compact(std::vector<Place*> reserved) {
        std::ranges::sort(reserved, {}, [](const Place* place) { return *place; });
        auto next = reserved.begin();
        std::vector<Place> places(elements_.size());
        Elements kept;
        for (Place place = 0; place < elements_.size(); ++place) {
            const bool isReserved = next != reserved.end() && **next == place;
            if (Keys::isEmpty(elements_[place]) && !isReserved) continue;
            places[place] = static_cast<Place>(kept.size());
            for (; next != reserved.end() && **next == place; ++next)
                **next = places[place];
            kept.push_back(std::move(elements_[place]));
        }
        // Places after the last element are free anyway; their distance from the end stays.
        for (; next != reserved.end(); ++next)
            **next -= static_cast<Place>(elements_.size() - kept.size());
        holes_ -= elements_.size() - kept.size();
        elements_ = std::move(kept);
        for (Slot& slot : slots_)
            if (!slot.isEmpty()) slot.place = places[slot.place];
    }

    /// Calls `change`, which gives the element with that key a new, free key. The element keeps its
    /// place.
    template <typename Change>
    void rekey(const SharedText& key, const Change& change) {
        const Place place = freeSlot(key);
        change();
        const SharedText& changed = Keys::keyOf(elements_[place]);
        slots_[slotOf(changed)] = {changed.hash(), place};
    }

    /// Removes everything, and releases the memory.
    void clear() {
        slots_ = std::vector<Slot>();
        elements_ = Elements();
        holes_ = 0;
    }

 private:
    struct Slot {
        static constexpr Place none = 0xFFFFFFFF;
        bool isEmpty() const { return place == none; }

        std::uint32_t hash = 0;
        Place place = none;
    };

    std::size_t mask() const { return slots_.size() - 1; }  // the size is a power of two
    std::size_t next(std::size_t slot) const { return (slot + 1) & mask(); }

    /// Returns the element that was found last, or the next one if the last ones were found in
    /// order, if it has the very same key object; else null. Needs neither hash nor characters.
    const Element* findNear(const SharedText& key) const {
        const auto hasKey = [&](std::size_t place) {
            if (place >= elements_.size()) return false;
            const Element& element = elements_[place];
            return !Keys::isEmpty(element) && Keys::keyOf(element).isSameObject(key);
        };
        if (hasKey(found_)) return &elements_[found_];
        if (!isInOrder_ || !hasKey(std::size_t{found_} + 1)) return nullptr;
        return &elements_[++found_];
    }

    /// The slot of the key, or the empty slot to put it into.
    std::size_t slotOf(const SharedText& key) const {
        const std::uint32_t hash = key.hash();
        std::size_t i = hash & mask();
        while (!slots_[i].isEmpty() && (slots_[i].hash != hash ||
                                        !Keys::equal(Keys::keyOf(elements_[slots_[i].place]), key)))
            i = next(i);
        return i;
    }

    /// Removes the key from the table. Returns the place of its element, which stays where it is.
    Place freeSlot(const SharedText& key) {
        std::size_t hole = slotOf(key);
        const Place place = slots_[hole].place;
        // Entries that a collision put behind the freed slot move up: a search ends at the first
        // empty slot, and must not end before them.
        for (std::size_t i = next(hole); !slots_[i].isEmpty(); i = next(i)) {
            const std::size_t home = slots_[i].hash & mask();
            if (((i - home) & mask()) < ((i - hole) & mask())) continue;
            slots_[hole] = slots_[i];
            hole = i;
        }
        slots_[hole] = Slot();
        return place;
    }

    /// Rebuilds the table with more than two slots for each element.
    void grow() {
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
    Elements elements_;
    std::size_t holes_ = 0;           // free places between the elements
    mutable Place found_ = 0;         // the place of the element that was found last
    mutable bool isInOrder_ = false;  // it was the next one after the element found before
};
