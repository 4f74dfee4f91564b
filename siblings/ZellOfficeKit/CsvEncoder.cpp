#include "CsvEncoder.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

namespace ZellOfficeKit {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 19U;
// A field of more units than this is encoded in pieces, so that the block need not grow.
constexpr std::size_t kLargeField = std::size_t{1} << 16U;
constexpr std::size_t kBytesPerUnit = 3;

constexpr std::array<std::uint8_t, 128> MakeQuotedTable()
{
    std::array<std::uint8_t, 128> table{};
    table[static_cast<std::size_t>(',')] = 1;
    table[static_cast<std::size_t>('"')] = 1;
    table[static_cast<std::size_t>('\r')] = 1;
    table[static_cast<std::size_t>('\n')] = 1;
    return table;
}

constexpr auto kQuoted = MakeQuotedTable();

// Encodes the character at in, which is not ASCII, and moves in behind it. Half a surrogate pair becomes
// U+FFFD.
char* EncodeOther(const char16_t*& in, const char16_t* end, char* out)
{
    std::uint32_t point = *in++;
    if (point >= 0xD800 && point < 0xE000) {
        const bool pair = point < 0xDC00 && in != end && *in >= 0xDC00 && *in < 0xE000;
        point = pair ? 0x10000U + ((point - 0xD800U) << 10U) + (*in++ - 0xDC00U) : 0xFFFDU;
    }
    if (point < 0x800) {
        *out++ = static_cast<char>(0xC0U | (point >> 6U));
    } else {
        if (point < 0x10000) {
            *out++ = static_cast<char>(0xE0U | (point >> 12U));
        } else {
            *out++ = static_cast<char>(0xF0U | (point >> 18U));
            *out++ = static_cast<char>(0x80U | ((point >> 12U) & 0x3FU));
        }
        *out++ = static_cast<char>(0x80U | ((point >> 6U) & 0x3FU));
    }
    *out++ = static_cast<char>(0x80U | (point & 0x3FU));
    return out;
}

// Encodes without quoting; special is set if a character asks for it. Eight units at a time while they are
// ASCII: the compiler makes one vector step of the inner loop.
char* EncodePlain(const char16_t* in, const char16_t* end, char* out, bool& special)
{
    unsigned quoted = 0;
    while (in != end) {
        while (end - in >= 8) {
            std::uint16_t all = 0;
            std::uint16_t marks = 0;
            for (int i = 0; i < 8; ++i) {
                const char16_t unit = in[i];
                const bool mark = unit == u',' || unit == u'"' || unit == u'\r' || unit == u'\n';
                all = static_cast<std::uint16_t>(all | unit);
                marks = static_cast<std::uint16_t>(marks | (mark ? 1U : 0U));
                out[i] = static_cast<char>(unit);
            }
            if (all >= 0x80)
                break;
            quoted |= marks;
            in += 8;
            out += 8;
        }
        while (in != end && *in < 0x80) {
            quoted |= kQuoted[*in];
            *out++ = static_cast<char>(*in++);
        }
        while (in != end && *in >= 0x80)
            out = EncodeOther(in, end, out);
    }
    special = quoted != 0;
    return out;
}

char* EncodeQuoted(const char16_t* in, const char16_t* end, char* out)
{
    while (in != end) {
        if (*in >= 0x80) {
            out = EncodeOther(in, end, out);
            continue;
        }
        if (*in == u'"')
            *out++ = '"';
        *out++ = static_cast<char>(*in++);
    }
    return out;
}

const char16_t* Units(const QString& text)
{
    return reinterpret_cast<const char16_t*>(text.constData());
}

bool AsksForQuotes(const char16_t* in, const char16_t* end)
{
    for (; in != end; ++in) {
        if (*in < 0x80 && kQuoted[*in] != 0)
            return true;
    }
    return false;
}

}  // namespace

CCsvEncoder::CCsvEncoder(Sink sink) : sink_(std::move(sink)), block_(new char[kBlock]) {}

void CCsvEncoder::AppendByteOrderMark()
{
    std::memcpy(Reserve(3), "\xEF\xBB\xBF", 3);
    size_ += 3;
}

void CCsvEncoder::AppendRecord(const QStringList& fields)
{
    if (failed_)
        return;
    // A lone empty field would read back as no field at all.
    if (fields.size() == 1 && fields.front().isEmpty()) {
        AppendByte('"');
        AppendByte('"');
    }
    bool first = true;
    for (const QString& field : fields) {
        if (!first)
            AppendByte(',');
        first = false;
        AppendField(field);
    }
    AppendByte('\r');
    AppendByte('\n');
}

bool CCsvEncoder::Flush()
{
    if (!failed_ && size_ > 0 && !sink_(block_.get(), size_))
        failed_ = true;
    size_ = 0;
    return !failed_;
}

void CCsvEncoder::Reset()
{
    size_ = 0;
    failed_ = false;
}

char* CCsvEncoder::Reserve(std::size_t size)
{
    if (kBlock - size_ < size)
        Flush();
    return block_.get() + size_;
}

void CCsvEncoder::AppendByte(char byte)
{
    *Reserve(1) = byte;
    ++size_;
}

void CCsvEncoder::AppendField(const QString& field)
{
    const auto units = static_cast<std::size_t>(field.size());
    if (units > kLargeField) {
        AppendLargeField(field);
        return;
    }
    char* begin = Reserve(units * kBytesPerUnit + 2);
    const char16_t* in = Units(field);
    bool special = false;
    char* end = EncodePlain(in, in + units, begin, special);
    if (special) {
        *begin = '"';
        end = EncodeQuoted(in, in + units, begin + 1);
        *end++ = '"';
    }
    size_ = static_cast<std::size_t>(end - block_.get());
}

void CCsvEncoder::AppendLargeField(const QString& field)
{
    const char16_t* in = Units(field);
    const char16_t* const end = in + field.size();
    const bool quoted = AsksForQuotes(in, end);
    if (quoted)
        AppendByte('"');
    while (in != end) {
        auto piece = static_cast<std::size_t>(end - in);
        if (piece > kLargeField) {
            // A surrogate pair stays together.
            piece = kLargeField;
            if (in[piece - 1] >= 0xD800 && in[piece - 1] < 0xDC00)
                ++piece;
        }
        char* out = Reserve(piece * kBytesPerUnit);
        bool special = false;
        char* next = quoted ? EncodeQuoted(in, in + piece, out) : EncodePlain(in, in + piece, out, special);
        size_ = static_cast<std::size_t>(next - block_.get());
        in += piece;
    }
    if (quoted)
        AppendByte('"');
}

}  // namespace ZellOfficeKit
