#include "MultimediaComm/VideoFormatTransfer.h"

#include "fakes/Journal.h"
#include "fakes/Script.h"
#include "fakes/VideoFiles.h"

#include <new>

namespace Zell::MultimediaComm {

// A call that is to fail is one for which there is no memory.
CVideoFormatTransfer::CVideoFormatTransfer()
{
    if (!fakes::Call("CVideoFormatTransfer", ""))
        throw std::bad_alloc();
}

CVideoFormatTransfer::~CVideoFormatTransfer() = default;

int CVideoFormatTransfer::Translate(std::string& target, std::string source, int reserved,
                                    std::string reserved_text)
{
    const bool succeeds = fakes::Call(
        "Translate", target + " " + source + " " + std::to_string(reserved) + " \"" + reserved_text + "\"");
    const int scripted = fakes::NextResult(fakes::TheScript().translate_results);
    const int result = succeeds ? scripted : 1;
    if (result == 0)
        fakes::WriteVideo("translated", source, target);
    return result;
}

}  // namespace Zell::MultimediaComm
