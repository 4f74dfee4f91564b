#pragma once

#include <QStringList>

#include <cstddef>
#include <functional>
#include <memory>

namespace ZellOfficeKit {

// Turns records into the bytes of a CSV file and hands them on in large blocks. Quoting by RFC 4180: a field
// with a comma, a double quote or a line end stands in double quotes, and its own double quotes are doubled.
class CCsvEncoder
{
public:
    // False means that the bytes are lost; nothing is handed on afterwards until Reset.
    using Sink = std::function<bool(char* data, std::size_t size)>;

    explicit CCsvEncoder(Sink sink);

    void AppendByteOrderMark();
    void AppendRecord(const QStringList& fields);
    // Hands on what is held. False if the sink refused this or any block before.
    bool Flush();
    bool failed() const { return failed_; }
    // Forgets what is held and what was refused.
    void Reset();

private:
    char* Reserve(std::size_t size);
    void AppendField(const QString& field);
    void AppendLargeField(const QString& field);
    void AppendByte(char byte);

    Sink sink_;
    std::unique_ptr<char[]> block_;
    std::size_t size_ = 0;
    bool failed_ = false;
};

}  // namespace ZellOfficeKit
