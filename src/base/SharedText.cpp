#include "base/SharedText.h"

#include <algorithm>
#include <limits>
#include <new>

#include "base/Text.h"

SharedText::SharedText(std::string_view first, std::string_view second, std::string_view third) {
    const std::size_t length = first.size() + second.size() + third.size();
    if (length == 0) return;
    if (length > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    head_ =
        new (::operator new(sizeof(Head) + length)) Head{1, static_cast<std::uint32_t>(length), 0};
    char* out = reinterpret_cast<char*>(head_ + 1);
    for (const std::string_view piece : {first, second, third})
        out = std::copy(piece.begin(), piece.end(), out);
}

std::uint32_t SharedText::hash() const {
    if (head_ == nullptr) return hashIgnoringCase({});
    if (head_->hash == 0) head_->hash = hashIgnoringCase(*this);
    return head_->hash;
}

void SharedText::free() { ::operator delete(head_); }
