// A text that stands in many places at once.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// A text of one word's size: its copies share the letters, which never change. For the many texts
/// of a configuration, most of which stand in a node, in a registry and in a record. Not to be
/// shared by threads.
class SharedText {
 public:
    SharedText() = default;
    // Implicit on purpose, as for any text. NOLINTNEXTLINE(google-explicit-constructor)
    SharedText(const std::convertible_to<std::string_view> auto& text) : SharedText(text, {}, {}) {}
    /// The pieces, one after the other.
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

    /// Begins to load the letters from memory, for a use soon.
    void prefetch() const { __builtin_prefetch(head_); }

    /// That of hashIgnoringCase(), taken once.
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
    /// What stands before the letters.
    struct Head {
        std::uint32_t users;
        std::uint32_t length;
        std::uint32_t hash;  // 0 until it is asked for
    };

    void free();

    Head* head_ = nullptr;  // none for an empty text
};

template <>
struct std::hash<SharedText> {
    std::size_t operator()(const SharedText& text) const { return text.hash(); }
};
