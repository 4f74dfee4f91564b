#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

namespace ZellOfficeKit {

// Bytes written to a stream so far; -1 if that can't be told.
std::int64_t StreamSize(std::FILE* stream);

// Watches streams that the workbook library closes while it packs, and leaves open where packing fails.
class CSheetStreams
{
public:
    explicit CSheetStreams(const std::vector<std::FILE*>& streams);
    CSheetStreams(const CSheetStreams&) = delete;
    CSheetStreams& operator=(const CSheetStreams&) = delete;
    ~CSheetStreams();

    void CloseThoseLeft() const;

private:
    struct Watched
    {
        std::FILE* stream;
        int descriptor;  // the stream's own
        int copy;        // ours: as long as it is open no other file can be mistaken for the stream's
    };

    std::vector<Watched> watched_;
};

}  // namespace ZellOfficeKit
