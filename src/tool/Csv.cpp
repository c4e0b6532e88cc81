#include "tool/Csv.h"

#include <csv.h>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>
#include <vector>

CsvWriter::CsvWriter(char separator, Write write)
    : write_(std::move(write)), bytes_("\xEF\xBB\xBF"), separator_(separator) {}

void CsvWriter::add(std::string_view field) {
    if (std::exchange(rowBegun_, true)) bytes_ += separator_;
    const auto isSpecial = [&](char c) {
        return c == separator_ || c == '"' || c == '\r' || c == '\n';
    };
    if (std::ranges::none_of(field, isSpecial)) {
        bytes_ += field;
        return;
    }
    const std::size_t start = bytes_.size();
    bytes_.resize(start + 2 * field.size() + 2);  // enough if each character is a quotation mark
    bytes_.resize(start + csv_write(bytes_.data() + start, bytes_.size() - start, field.data(),
                                    field.size()));
}

void CsvWriter::endRow() {
    bytes_ += "\r\n";
    rowBegun_ = false;
    constexpr std::size_t many = 256UL * 1024;
    if (bytes_.size() > many) finish();
}

void CsvWriter::finish() {
    write_(bytes_);
    bytes_.clear();
}

namespace {

bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

/// Collects the rows that libcsv finds.
class Rows {
 public:
    explicit Rows(const TakeRow& take, char separator) : take_(take) {
        if (csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
        csv_set_delim(&parser_, static_cast<unsigned char>(separator));
        csv_set_space_func(&parser_,
                           [](unsigned char /*c*/) { return 0; });  // keep blanks around fields
        csv_set_blk_size(&parser_, 4096);
    }
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    ~Rows() { csv_free(&parser_); }

    /// Parses the next line of the text, with its line end.
    void parse(std::string_view line) {
        ++line_;
        if (rowEnded_) start_ = line_;
        if (!isLineEnd(line.front())) rowEnded_ = false;
        check(csv_parse(&parser_, line.data(), line.size(), fieldEnded, rowEnded, this) ==
              line.size());
    }

    /// Called after the last line.
    void finish() { check(csv_fini(&parser_, fieldEnded, rowEnded, this) == 0); }

    bool wantsMore() const { return wantsMore_; }

 private:
    void check(bool parsed) {
        if (failure_ != nullptr) std::rethrow_exception(failure_);
        if (parsed) return;
        if (csv_error(&parser_) != CSV_EPARSE) throw std::bad_alloc();
        throw CsvError{start_};
    }

    /// libcsv is written in C, so no exception may pass through it. The exception is stored, later
    /// events are ignored, and check() throws the exception again.
    template <typename Event>
    void guard(const Event& event) {
        if (failure_ != nullptr || !wantsMore_) return;
        try {
            event();
        } catch (...) {
            failure_ = std::current_exception();
        }
    }

    static Rows& of(void* userData) { return *static_cast<Rows*>(userData); }

    static void fieldEnded(void* data, std::size_t size, void* userData) {
        Rows& rows = of(userData);
        rows.guard([&] {
            rows.texts_.append(static_cast<const char*>(data), size);
            rows.ends_.push_back(rows.texts_.size());
        });
    }

    static void rowEnded(int /*character*/, void* userData) {
        Rows& rows = of(userData);
        rows.rowEnded_ = true;
        rows.guard([&] { rows.endRow(); });
    }

    void endRow() {
        fields_.clear();
        std::size_t begin = 0;
        for (const std::size_t end : ends_) {
            fields_.push_back(std::string_view(texts_).substr(begin, end - begin));
            begin = end;
        }
        wantsMore_ = take_(start_, fields_);
        texts_.clear();
        ends_.clear();
    }

    const TakeRow& take_;
    csv_parser parser_{};
    std::exception_ptr failure_;
    bool wantsMore_ = true;
    std::size_t line_ = 0;
    std::size_t start_ = 1;  // the line in which the row begins
    bool rowEnded_ = true;   // and the next one has not begun
    // The current row.
    std::string texts_;
    std::vector<std::size_t> ends_;
    std::vector<std::string_view> fields_;
};

}  // namespace

void readCsv(std::string_view text, char separator, const TakeRow& take) {
    Rows rows(take, separator);
    while (!text.empty() && rows.wantsMore()) {
        auto end = static_cast<std::size_t>(std::ranges::find_if(text, isLineEnd) - text.begin());
        end = std::min(end + (text.substr(end).starts_with("\r\n") ? 2 : 1), text.size());
        rows.parse(text.substr(0, end));
        text.remove_prefix(end);
    }
    if (rows.wantsMore()) rows.finish();
}
