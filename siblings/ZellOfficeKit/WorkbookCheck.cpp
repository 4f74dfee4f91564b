#include "WorkbookCheck.h"

#include "ZipReader.h"

#include <algorithm>
#include <map>

namespace ZellOfficeKit {
namespace {

constexpr std::size_t kHead = 4096;
constexpr std::size_t kTail = 256;
constexpr char kRowsBegin[] = "<sheetData>";
constexpr char kRowsEnd[] = "</sheetData>";

bool EndsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Looks at an XML member while it passes by: keeps its head and its tail and, for a sheet, what stands where
// the rows must end.
class CMemberLook
{
public:
    explicit CMemberLook(std::uint64_t row_bytes) : row_bytes_(row_bytes) {}

    void Take(const char* data, std::size_t size)
    {
        if (head_.size() < kHead)
            head_.append(data, std::min(size, kHead - head_.size()));
        if (rows_end_ == 0)
            FindRowsEnd();
        TakeRowsEnd(data, size);
        if (size >= kTail)
            tail_.assign(data + size - kTail, kTail);
        else
            tail_.append(data, size);
        if (tail_.size() > 2 * kTail)
            tail_.erase(0, tail_.size() - kTail);
        passed_ += size;
    }

    // The end of the member is the end of its first element.
    bool IsWhole() const
    {
        // What comes before the first element is the XML declaration.
        std::size_t root = head_.find('<');
        if (head_.compare(0, 2, "<?") == 0)
            root = head_.find('<', 1);
        if (root == std::string::npos)
            return false;
        const std::size_t end = head_.find_first_of(" />\r\n\t", root + 1);
        if (end == std::string::npos)
            return false;
        const bool is_one_tag = passed_ < kHead && head_.find('>', root) == head_.find_last_of('>');
        const std::string tail = tail_.substr(0, tail_.find_last_not_of("\r\n") + 1);
        return EndsWith(tail, is_one_tag ? "/>" : "</" + head_.substr(root + 1, end - root - 1) + ">");
    }

    bool HasRows() const { return row_bytes_ == 0 || rows_end_text_ == kRowsEnd; }

private:
    void FindRowsEnd()
    {
        const std::size_t begin = row_bytes_ == 0 ? std::string::npos : head_.find(kRowsBegin);
        if (begin != std::string::npos)
            rows_end_ = begin + (sizeof(kRowsBegin) - 1) + row_bytes_;
    }

    void TakeRowsEnd(const char* data, std::size_t size)
    {
        constexpr std::size_t kSize = sizeof(kRowsEnd) - 1;
        const std::uint64_t next = rows_end_ + rows_end_text_.size();
        if (rows_end_ == 0 || rows_end_text_.size() == kSize || next < passed_ || next >= passed_ + size)
            return;
        const auto at = static_cast<std::size_t>(next - passed_);
        rows_end_text_.append(data + at, std::min(size - at, kSize - rows_end_text_.size()));
    }

    std::uint64_t row_bytes_;
    std::uint64_t rows_end_ = 0;
    std::uint64_t passed_ = 0;
    std::string head_;
    std::string tail_;
    std::string rows_end_text_;
};

bool IsXml(const std::string& name)
{
    return EndsWith(name, ".xml") || EndsWith(name, ".rels");
}

}  // namespace

std::string FindDamage(const std::string& path, const std::vector<ExpectedSheet>& expected)
{
    CZipReader zip;
    if (!zip.Open(path))
        return "the file has no directory";
    std::map<std::string, std::uint64_t> sheets;
    for (const ExpectedSheet& sheet : expected)
        sheets["xl/worksheets/sheet" + std::to_string(sheet.number) + ".xml"] = sheet.row_bytes;
    for (const ZipEntry& entry : zip.entries()) {
        if (!IsXml(entry.name))
            continue;
        const auto sheet = sheets.find(entry.name);
        CMemberLook look(sheet == sheets.end() ? 0 : sheet->second);
        const bool is_read =
            zip.Read(entry, [&look](const char* data, std::size_t size) { look.Take(data, size); });
        if (!is_read || !look.IsWhole())
            return entry.name + " is cut";
        if (!look.HasRows())
            return entry.name + " lacks rows";
        if (sheet != sheets.end())
            sheets.erase(sheet);
    }
    return sheets.empty() ? std::string() : sheets.begin()->first + " is missing";
}

}  // namespace ZellOfficeKit
