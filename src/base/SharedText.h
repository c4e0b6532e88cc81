// A text whose copies share their characters.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// An immutable text of the size of one pointer. Its copies share the characters. Most texts of a
/// configuration are used three times: in a node, in a registry and in a record. Not thread-safe.
///
///     const SharedText key("Plant.Floor1");
///     record.sKey = key;  // copies one pointer
class SharedText {
 public:
    SharedText() = default;
    // Implicit, as for std::string. NOLINTNEXTLINE(google-explicit-constructor)
    SharedText(const std::convertible_to<std::string_view> auto& text) : SharedText(text, {}, {}) {}
    /// Concatenates the three texts.
    SharedText(std::string_view first, std::string_view second, std::string_view third);
    SharedText(const SharedText& other) noexcept : head_(other.head_) {
        if (head_ != nullptr) ++head_->users;
    }
    SharedText(SharedText&& other) noexcept : head_(std::exchange(other.head_, nullptr)) {}
    SharedText& operator=(const SharedText& other) noexcept { return *this = SharedText(other); }
    SharedText& operator=(SharedText&& other) noexcept {
        std::swap(head_, other.head_);
        return *this;
    }
    ~SharedText() {
        if (head_ != nullptr && --head_->users == 0) free();
    }

    // NOLINTNEXTLINE(google-explicit-constructor)
    operator std::string_view() const {
        if (head_ == nullptr) return {};
        return {reinterpret_cast<const char*>(head_ + 1), head_->length};
    }
    std::string string() const { return std::string(std::string_view(*this)); }
    std::size_t size() const { return head_ == nullptr ? 0 : head_->length; }
    bool empty() const { return head_ == nullptr; }

    /// True for copies of one text.
    bool isSameObject(const SharedText& other) const { return head_ == other.head_; }

    /// Hints to the processor that the characters will be read soon.
    void prefetch() const { __builtin_prefetch(head_); }

    /// hashIgnoringCase() of the text, computed at the first call.
    std::uint32_t hash() const;

    friend std::string operator+(std::string_view a, const SharedText& b) {
        return std::string(a).append(b);
    }
    friend bool operator==(const SharedText& a, const SharedText& b) {
        return a.head_ == b.head_ || std::string_view(a) == std::string_view(b);
    }
    friend bool operator==(const SharedText& a,
                           const std::convertible_to<std::string_view> auto& b) {
        return std::string_view(a) == std::string_view(b);
    }

 private:
    /// Precedes the characters in memory.
    struct Head {
        std::uint32_t users;
        std::uint32_t length;
        std::uint32_t hash;  // 0 until it is computed
    };

    void free();

    Head* head_ = nullptr;  // null for an empty text
};

template <>
struct std::hash<SharedText> {
    std::size_t operator()(const SharedText& text) const { return text.hash(); }
};
