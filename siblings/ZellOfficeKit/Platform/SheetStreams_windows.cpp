#include "Platform/SheetStreams.h"

#include <stdio.h>

namespace ZellOfficeKit {

std::int64_t StreamSize(std::FILE* stream)
{
    return _ftelli64(stream);
}

CSheetStreams::CSheetStreams(const std::vector<std::FILE*>& streams)
{
    for (std::FILE* stream : streams)
        watched_.push_back({stream, -1, -1});
}

CSheetStreams::~CSheetStreams() = default;

// The C runtime ends the process when it is asked about a descriptor that is closed, so a stream left open
// stays so; its file removes itself when the process ends.
void CSheetStreams::CloseThoseLeft() const {}

}  // namespace ZellOfficeKit
