#include "model/ListView.h"

#include <algorithm>
#include <utility>

#include "base/RunTimeError.h"

const SharedText& ListView::Row::cell(std::size_t column) const {
    static const SharedText none;
    return column < cells.size() ? cells[column] : none;
}

ListView::Update::Update(ListView& list) : list_(list) { ++list_.updates_; }

ListView::Update::~Update() {
    if (list_.updates_ == 1) list_.sortRows();
    if (--list_.updates_ > 0) return;
    const bool isReset = std::exchange(list_.isResetting_, false);
    const bool rowsChanged = std::exchange(list_.rowsChanged_, false);
    const bool viewChanged = std::exchange(list_.viewChanged_, false);
    if (list_.listener_ == nullptr) return;
    if (isReset) {
        list_.listener_->reset();
    } else if (rowsChanged) {
        list_.listener_->rowsChanged();
    }
    if (viewChanged) list_.listener_->viewChanged();
}

/// To be called within an Update before rows are added, removed or sorted.
void ListView::startReset() {
    if (!std::exchange(isResetting_, true) && listener_ != nullptr) listener_->aboutToReset();
}

void ListView::setView(View view) {
    view_ = view;
    if (updates_ > 0) {
        viewChanged_ = true;
    } else if (listener_ != nullptr) {
        listener_->viewChanged();
    }
}

void ListView::setColumns(std::vector<Column> columns) {
    const Update update(*this);
    startReset();
    columns_ = std::move(columns);
    if (listener_ != nullptr) listener_->columnsBuilt();
}

void ListView::clearRows() {
    const Update update(*this);
    startReset();
    placesKnown_ = false;
    rows_.clear();
    current_.reset();
}

void ListView::addRow(Row row) {
    const Update update(*this);
    startReset();
    rows_.push_back(std::move(row));
    placesKnown_ = false;
}

std::optional<std::size_t> ListView::findRow(const SharedText& key) const {
    if (!placesKnown_) {
        places_.clear();
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            places_.add({rows_[row].key, row});
        }
        placesKnown_ = true;
    }
    const Place* place = places_.find(key);
    if (place == nullptr) return std::nullopt;
    return place->row;
}

void ListView::rekeyRows(std::string_view oldKey, std::string_view newKey,
                         const std::function<bool(const SharedText& newKey)>& isBelow) {
    if (oldKey == newKey) return;
    const Update update(*this);
    placesKnown_ = false;
    rowsChanged_ = true;
    for (Row& row : rows_) {
        const std::string_view key = row.key;
        if (!key.starts_with(oldKey)) continue;
        const std::string_view below = key.substr(oldKey.size());
        if (!below.empty() && below.front() != '.') continue;
        SharedText followed(newKey, below, {});
        if (isBelow(followed)) row.key = std::move(followed);
    }
}

void ListView::replaceRow(std::size_t place, Row row) {
    Row& shown = rows_.at(place);
    row.selected = shown.selected;
    if (row == shown) return;
    if (row.key != shown.key) {
        if (findRow(row.key)) throw RunTimeError(ErrorNumber::keyNotUnique);
        places_.take(shown.key);
        places_.add({row.key, place});
    }
    const Update update(*this);
    rowsChanged_ = true;
    shown = std::move(row);
}

void ListView::ensureVisible(std::size_t row) {
    if (listener_ != nullptr) listener_->madeVisible(row);
}

const ListView::Row* ListView::selectedRow() const {
    if (current_ && rows_[*current_].selected) return &rows_[*current_];
    const auto first = std::ranges::find(rows_, true, &Row::selected);
    return first == rows_.end() ? nullptr : &*first;
}

std::size_t ListView::selectedCount() const {
    return static_cast<std::size_t>(std::ranges::count(rows_, true, &Row::selected));
}

void ListView::sortBy(std::size_t column) {
    const Update update(*this);
    startReset();
    sortColumn_ = column;
}

void ListView::sortRows() {
    if (!sortColumn_ || *sortColumn_ >= columns_.size()) return;
    const auto before = [column = *sortColumn_, textBefore = columns_[*sortColumn_].before](
                            const Row& a, const Row& b) {
        return textBefore(a.cell(column), b.cell(column));
    };
    // Usually a few rows were added to many sorted ones: sort only these, and merge them.
    const auto added = std::is_sorted_until(rows_.begin(), rows_.end(), before);
    if (added == rows_.end()) return;
    startReset();
    const SharedText current = current_ ? rows_[*current_].key : SharedText();
    std::stable_sort(added, rows_.end(), before);
    std::inplace_merge(rows_.begin(), added, rows_.end(), before);
    placesKnown_ = false;
    if (current_) current_ = findRow(current);
}
