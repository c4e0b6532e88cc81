// The keyed collections that hold the records of a configuration.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "base/KeyedSet.h"
#include "base/RunTimeError.h"
#include "base/Text.h"

/// An ordered, keyed collection of shared records: insertion order, keys matched without regard
/// to letter case; adding, finding and removing take constant time.
///
///     Registry<clsItem> items;
///     items.add(item, "Plant.Floor1.Light3");
///     items.at("plant.floor1.light3")->sComment = "Hall";
///     for (const auto& [key, item] : items) ...
///
/// Records are shared pointers because the editor clipboard keeps a removed item alive and
/// because one record may stand under two keys (a copy made by dragging).
template <typename T>
class Registry {
    struct Entry {
        SharedText key;
        std::shared_ptr<T> record;
    };
    struct Keys {
        static bool isEmpty(const Entry& entry) { return entry.key.empty(); }
        static const SharedText& keyOf(const Entry& entry) { return entry.key; }
        static bool equal(std::string_view a, std::string_view b) {
            return equalIgnoringCase(a, b);
        }
    };
    using Entries = KeyedSet<Entry, Keys>;

 public:
    using Iterator = typename Entries::Iterator;

    Registry() = default;
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;
    ~Registry() = default;

    std::size_t count() const { return entries_.size(); }
    /// Key and record of each entry, in insertion order.
    Iterator begin() const { return entries_.begin(); }
    Iterator end() const { return entries_.end(); }

    /// Appends the record under the key. Raises ErrorNumber::keyTaken when the key is there
    /// already, in whatever case, and ErrorNumber::invalidCall when it is empty.
    void add(std::shared_ptr<T> record, SharedText key) {
        if (key.empty()) throw RunTimeError(ErrorNumber::invalidCall);
        if (!entries_.add({std::move(key), std::move(record)})) {
            throw RunTimeError(ErrorNumber::keyTaken);
        }
    }

    /// The record under the key; null when there is none.
    std::shared_ptr<T> find(const SharedText& key) const {
        const Entry* entry = entries_.find(key);
        return entry == nullptr ? nullptr : entry->record;
    }

    /// The record under the key. Raises ErrorNumber::invalidCall when there is none.
    const std::shared_ptr<T>& at(const SharedText& key) const {
        const Entry* entry = entries_.find(key);
        if (entry == nullptr) throw RunTimeError(ErrorNumber::invalidCall);
        return entry->record;
    }

    /// The record that was added last. Raises ErrorNumber::invalidCall when there is none.
    const std::shared_ptr<T>& last() const {
        if (entries_.last() == nullptr) throw RunTimeError(ErrorNumber::invalidCall);
        return entries_.last()->record;
    }

    /// Takes the entry under the key out. Raises ErrorNumber::invalidCall when there is none.
    void remove(const SharedText& key) {
        if (Keys::isEmpty(entries_.take(key))) throw RunTimeError(ErrorNumber::invalidCall);
    }

    /// Moves the entry under `oldKey` to the end, under `newKey`; `changeRecord` is called on its
    /// record. Raises ErrorNumber::invalidCall when there is no such entry or the new key is
    /// empty, and ErrorNumber::keyTaken when another entry has the new key; then nothing has
    /// changed.
    template <typename Change>
    void rekey(const SharedText& oldKey, const SharedText& newKey, Change&& changeRecord) {
        if (newKey.empty()) throw RunTimeError(ErrorNumber::invalidCall);
        auto record = at(oldKey);
        const Entry* holder = entries_.find(newKey);
        if (holder != nullptr && !Keys::equal(holder->key, oldKey)) {
            throw RunTimeError(ErrorNumber::keyTaken);
        }
        remove(oldKey);
        std::forward<Change>(changeRecord)(*record);
        add(std::move(record), newKey);
    }

    void clear() { entries_.clear(); }

 private:
    Entries entries_;
};
