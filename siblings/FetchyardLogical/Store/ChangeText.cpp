#include "Store/ChangeText.h"

#include <zlib.h>

#include <type_traits>
#include <utility>

namespace FetchyardLogical::details {

namespace {

// All members of a task in the order in which they are written.
template <typename Task, typename Visitor>
void VisitMembers(Task& task, Visitor&& visit)
{
    visit(task.guid);
    visit(task.plugin_id);
    visit(task.name);
    visit(task.folder);
    visit(task.place);
    visit(task.queue_order);
    visit(task.record_kind);
    visit(task.state);
    visit(task.error.iFirstCode);
    visit(task.error.iSecondCode);
    visit(task.error_text);
    visit(task.handed_over);
    visit(task.started);
    visit(task.ended);
    visit(task.owns_folder);
    visit(task.remove_folder);
}

class Writer
{
public:
    explicit Writer(std::string& bytes) : bytes_(bytes) {}

    void operator()(const std::string& text)
    {
        AppendNumber(bytes_, text.size(), 4);
        bytes_ += text;
    }
    template <typename T>
    std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>> operator()(T value)
    {
        AppendNumber(bytes_, static_cast<std::uint64_t>(value), static_cast<int>(sizeof(T)));
    }

private:
    std::string& bytes_;
};

class Reader
{
public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    bool IsGood() const { return good_; }
    bool IsAtEnd() const { return bytes_.empty(); }

    void operator()(std::string& text)
    {
        std::uint32_t size = 0;
        (*this)(size);
        text = std::string(Take(size));
    }
    void operator()(bool& value)
    {
        std::uint8_t number = 0;
        (*this)(number);
        value = number != 0;
    }
    template <typename T>
    std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>> operator()(T& value)
    {
        const std::string_view taken = Take(sizeof(T));
        if (good_)
            value = static_cast<T>(NumberAt(taken, 0, static_cast<int>(sizeof(T))));
    }

private:
    std::string_view Take(std::size_t size)
    {
        if (!good_ || size > bytes_.size()) {
            good_ = false;
            return {};
        }
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return taken;
    }

    std::string_view bytes_;
    bool good_ = true;
};

bool IsKind(Change::Kind kind)
{
    return kind == Change::Kind::Put || kind == Change::Kind::Update || kind == Change::Kind::Remove;
}

}  // namespace

void AppendNumber(std::string& bytes, std::uint64_t value, int size)
{
    char number[8];
    for (int i = 0; i < size; ++i)
        number[i] = static_cast<char>((value >> (8 * i)) & 0xFF);
    bytes.append(number, static_cast<std::size_t>(size));
}

std::uint64_t NumberAt(std::string_view bytes, std::size_t position, int size)
{
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i)
        value |= static_cast<std::uint64_t>(
                     static_cast<unsigned char>(bytes[position + static_cast<std::size_t>(i)]))
                 << (8 * i);
    return value;
}

std::string WriteChanges(const Changes& changes)
{
    std::string bytes;
    Writer write(bytes);
    for (const Change& change : changes) {
        write(change.kind);
        VisitMembers(change.task, write);
        write(change.resume_text != nullptr);
        if (change.resume_text)
            write(*change.resume_text);
    }
    return bytes;
}

bool ReadChanges(std::string_view bytes, Changes& changes)
{
    Reader read(bytes);
    while (read.IsGood() && !read.IsAtEnd()) {
        Change change;
        read(change.kind);
        VisitMembers(change.task, read);
        bool has_text = false;
        read(has_text);
        if (has_text) {
            std::string text;
            read(text);
            change.resume_text = std::make_shared<const std::string>(std::move(text));
        }
        if (!read.IsGood() || !IsKind(change.kind) || change.task.guid.empty())
            return false;
        changes.push_back(std::move(change));
    }
    return read.IsGood();
}

std::uint32_t CheckOf(std::string_view bytes, std::uint32_t earlier)
{
    return static_cast<std::uint32_t>(
        crc32_z(earlier, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

std::uint32_t CheckOf(const StoredTask& task)
{
    std::string bytes;
    bytes.reserve(256 + task.name.size() + task.folder.size() + task.error_text.size());
    VisitMembers(task, Writer(bytes));
    return CheckOf(std::string_view(bytes));
}

}  // namespace FetchyardLogical::details
