#include "fakes/Journal.h"
#include "FetchyardBussiness/DeterminantWriteFile/DeterminantDownloadParam.h"
#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTaskParam.h"
#include "FuzzTarget.h"
#include "ZellBase/Util.h"

namespace {

template <typename Record>
bool Read(const std::string& base64, Record& param)
{
    param.SetVal_str_resume_xml(base64);
    return param.ResumeParamFromXml();
}

// What was read, written and read again is the same to the writer, but for the condition of a password check,
// which the second record has lost.
template <typename Record>
void ReadAndWriteAgain(const std::string& record)
{
    Record first;
    if (!Read(record, first))
        return;
    Record second;
    Record third;
    fuzz::Expect(Read(first.CreateResumeXml(), second), "a record that was written can be read");
    const std::string written = second.CreateResumeXml();
    fuzz::Expect(Read(written, third) && third.CreateResumeXml() == written,
                 "the second record is the third");
}

}  // namespace

// The document of a resume record, and the same bytes as the text that should be its Base64, read as the
// record of each kind of export.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = fuzz::Text(data, size);
    fakes::Reset();
    std::string base64;
    Zell::Base::Encrypt::Base64Encode(base64, text);
    for (const std::string& record : {base64, text}) {
        ReadAndWriteAgain<FetchyardBussiness::DeterminantDownloadParam>(record);
        ReadAndWriteAgain<FetchyardBussiness::DownloadPersonPicTaskParam>(record);
    }
    return 0;
}
