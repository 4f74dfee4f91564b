#include "fakes/Journal.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FuzzTarget.h"
#include "ZellBase/Util.h"

namespace {

using FetchyardBussiness::DeterminantDownloadParam;

bool Read(const std::string& base64, DeterminantDownloadParam& param)
{
    param.SetVal_str_resume_xml(base64);
    return param.ResumeParamFromXml();
}

// What was read, written and read again is the same to the writer, but for the condition of a password check,
// which the second record has lost.
void WriteAndReadAgain(DeterminantDownloadParam& param)
{
    DeterminantDownloadParam second;
    DeterminantDownloadParam third;
    fuzz::Expect(Read(param.CreateResumeXml(), second), "a record that was written can be read");
    const std::string written = second.CreateResumeXml();
    fuzz::Expect(Read(written, third) && third.CreateResumeXml() == written,
                 "the second record is the third");
}

}  // namespace

// The document of a resume record, and the same bytes as the text that should be its Base64.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = fuzz::Text(data, size);
    fakes::Reset();
    std::string base64;
    Zell::Base::Encrypt::Base64Encode(base64, text);
    for (const std::string& record : {base64, text}) {
        DeterminantDownloadParam param;
        if (Read(record, param))
            WriteAndReadAgain(param);
    }
    return 0;
}
