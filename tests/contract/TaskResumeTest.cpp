#include "FetchyardBussiness/DeterminantWriteFile/DeterminantWriteFileTask.h"
#include "FetchyardBussiness/DeterminantWriteFile/DownloadPersonPicTask.h"
#include "FetchyardBussiness/DownloadBussinessManager.h"
#include "support/ContractTest.h"
#include "support/ResumeRecords.h"

#include <QDateTime>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace contract {
namespace {

using namespace FetchyardBussiness;
using ZellTaskKit::CDownloadTaskBase;
using ZellTaskKit::CDownloadTaskParam;

class TaskResumeTest : public ContractTest
{
protected:
    TaskResumeTest() { fakes::TheScript().public_data_path = "/save/"; }

    // What the operation says of a record; the task that came of it is in task_.
    bool Resume(const std::string& resume_xml)
    {
        task_ = nullptr;
        return CDownloadBussinessManager::Instance().ResumeDownloadTask(task_, resume_xml);
    }
    bool ResumeXml(const std::string& xml) { return Resume(Encoded(xml)); }
    bool ResumeElements(const std::string& inside)
    {
        return ResumeXml("<FileExportParams>" + inside + "</FileExportParams>");
    }

    VsFileParam& Composite() { return Record<DeterminantDownloadParam>().vs_file_param_; }
    PersonVsFileParam& Person() { return Record<DownloadPersonPicTaskParam>().vs_file_param_; }

    template <typename T>
    T& Record()
    {
        const auto record = task_ ? task_->GetDownloadTaskParam<T>() : nullptr;
        if (!record)
            throw std::runtime_error("a task with such a record expected");
        return *record;
    }

    void ExpectFieldsOfAResumedTask(const CDownloadTaskParam& record, std::int64_t since,
                                    const std::string& resume_xml)
    {
        EXPECT_EQ(record.GetVal_state(), ZellTaskKit::Downloading);
        EXPECT_EQ(static_cast<int>(record.GetVal_open_type()), 1);
        EXPECT_EQ(record.GetVal_str_plugin_id(), "fetchyard.c");
        EXPECT_GE(record.GetVal_operate_time(), since);
        EXPECT_LE(record.GetVal_operate_time(), QDateTime::currentSecsSinceEpoch());
        EXPECT_EQ(record.GetVal_file_size(), 0U);
        EXPECT_FALSE(record.GetVal_b_enable_percent());
        EXPECT_FALSE(record.GetVal_b_enable_speed());
        EXPECT_FALSE(record.GetVal_b_enable_remain_time());
        EXPECT_TRUE(record.GetVal_b_enable_size());
        EXPECT_FALSE(record.GetVal_b_show_tip());
        EXPECT_EQ(record.GetVal_str_resume_xml(), resume_xml);
        EXPECT_EQ(record.GetVal_str_name() + record.GetVal_str_file_path(), "");
        EXPECT_EQ(task_->GetDownloadState(), ZellTaskKit::Downloading);
    }

    std::shared_ptr<CDownloadTaskBase> task_;
};

TEST_F(TaskResumeTest, CompositeExportComesBackWithTheseCallsAndLines)
{
    EXPECT_TRUE(ResumeXml(Golden("resume-plain.xml")));
    EXPECT_NE(std::dynamic_pointer_cast<CDeterminantWriteFileTask>(task_), nullptr);
    EXPECT_EQ(Trace(), R"(
log3 DeterminantDownloadParam::ResumeParamFromXml
log3  CDownloadBussinessManager::ResumeDownloadTask  save_path = D:/Exports/Alarms/
SetDownloadTaskParam
)");
    EXPECT_EQ(task_->GetGuid(), "task-1");
    EXPECT_EQ(Composite().str_export_file_name, "Alarms");
}

TEST_F(TaskResumeTest, PersonExportComesBackWithTheseCallsAndLines)
{
    EXPECT_TRUE(ResumeXml(Golden("resume-person.xml")));
    EXPECT_NE(std::dynamic_pointer_cast<CDownloadPersonPicTask>(task_), nullptr);
    EXPECT_EQ(Trace(), R"(
log3  CDownloadBussinessManager::ResumeDownloadTask  DownloadPersonPicTaskParam save_path =·
GetClientConfig 2
SetDownloadTaskParam
)");
    EXPECT_EQ(task_->GetGuid(), "task-1");
}

TEST_F(TaskResumeTest, TaskListShowsAResumedTaskAsADownload)
{
    for (const char* const name : {"resume-plain.xml", "resume-person.xml"}) {
        const std::int64_t before = QDateTime::currentSecsSinceEpoch();
        const std::string record = Encoded(Golden(name));
        ASSERT_TRUE(Resume(record)) << name;
        ExpectFieldsOfAResumedTask(Record<CDownloadTaskParam>(), before, record);
    }
}

TEST_F(TaskResumeTest, CompositeExportKeepsItsFolderWhateverIsConfigured)
{
    ASSERT_TRUE(ResumeXml(Golden("resume-plain.xml")));
    EXPECT_EQ(Composite().str_export_file_path, "D:/Exports/Alarms/");
    EXPECT_EQ(fakes::CountOf("GetClientConfig"), 0);
}

TEST_F(TaskResumeTest, CompositeExportWithoutAFolderGetsTheConfiguredOne)
{
    ASSERT_TRUE(ResumeElements("<TaskParamType>1</TaskParamType><ExportFileName>Alarms</ExportFileName>"));
    EXPECT_EQ(Composite().str_export_file_path, "/save/Alarms/");
}

TEST_F(TaskResumeTest, CompositeExportWithoutANameGetsANewOneAndKeepsItsFolder)
{
    ASSERT_TRUE(
        ResumeElements("<TaskParamType>1</TaskParamType><ExportFilePath>D:\\Exports\\Old</ExportFilePath>"));
    EXPECT_EQ(Composite().str_export_file_name, "ExportFile_20260131_235959");
    EXPECT_EQ(Composite().str_export_file_path, "D:\\Exports\\Old");
}

TEST_F(TaskResumeTest, CompositeExportWithNeitherGetsBoth)
{
    ASSERT_TRUE(ResumeElements("<TaskParamType>1</TaskParamType>"));
    EXPECT_EQ(Composite().str_export_file_name, "ExportFile_20260131_235959");
    EXPECT_EQ(Composite().str_export_file_path, "/save/ExportFile_20260131_235959/");
    EXPECT_EQ(Lines(Trace(), "log3  CDown"),
              "\nlog3  CDownloadBussinessManager::ResumeDownloadTask  save_path =·\n");
}

TEST_F(TaskResumeTest, PersonExportGoesToTheFolderOfThePresentConfiguration)
{
    ASSERT_TRUE(ResumeXml(Golden("resume-person.xml")));
    EXPECT_EQ(Person().str_save_path.Get(), "/save/Anna 大门/");
    fakes::TheScript().public_data_path = "/elsewhere/";
    ASSERT_TRUE(ResumeXml(Golden("resume-person.xml")));
    EXPECT_EQ(Person().str_save_path.Get(), "/elsewhere/Anna 大门/");
}

TEST_F(TaskResumeTest, PersonExportWithoutANameGetsANewOne)
{
    ASSERT_TRUE(ResumeElements("<TaskParamType>3</TaskParamType>"));
    EXPECT_EQ(Person().str_zip_name, "ExportFile_20260131_235959");
    EXPECT_EQ(Person().str_save_path.Get(), "/save/ExportFile_20260131_235959/");
}

TEST_F(TaskResumeTest, FileSystemIsLeftAlone)
{
    fakes::TheScript().public_data_path = Folder();
    ASSERT_TRUE(ResumeElements("<TaskParamType>3</TaskParamType><ZipName>Anna</ZipName>"));
    ASSERT_TRUE(ResumeElements("<TaskParamType>1</TaskParamType><ExportFileName>Anna</ExportFileName>"));
    EXPECT_FALSE(Exists("Anna"));
    EXPECT_TRUE(fakes::TheScript().handed_over.empty());
}

TEST_F(TaskResumeTest, ErrorOfTheLastRunComesBackWithTheRecord)
{
    ASSERT_TRUE(ResumeXml(Golden("resume-full.xml")));
    EXPECT_EQ(Record<CDownloadTaskParam>().GetVal_error_().iFirstCode, 20);
    EXPECT_EQ(Record<CDownloadTaskParam>().GetVal_error_().iSecondCode, 3219);
}

TEST_F(TaskResumeTest, PasswordCheckComesBackWithoutItsAccount)
{
    ASSERT_TRUE(ResumeXml(Golden("resume-person-password.xml")));
    EXPECT_TRUE(Record<CDownloadTaskParam>().GetIsExportSensitiveInfo());
    EXPECT_EQ(Person().str_request_condition, R"({"PageIndex":1,"PageSize":100})");
    EXPECT_EQ(fakes::CountOf("GetUserInfo"), 0);
}

TEST_F(TaskResumeTest, ResumedExportRunsFromItsStoredRequest)
{
    fakes::TheScript().public_data_path = Folder();
    ASSERT_TRUE(
        ResumeElements("<TaskParamType>3</TaskParamType><ZipName>Anna</ZipName>"
                       "<RequestMethod>POST</RequestMethod><RequestAPI>/persons</RequestAPI>"
                       "<RequestCondition>{\"PageIndex\":7,\"PageSize\":2}</RequestCondition>"));
    fakes::PersonPageAnswer page;
    page.is_last = false;
    fakes::PersonPageAnswer last;
    last.is_last = true;
    fakes::TheScript().person_pages = {page, last};
    fakes::Take();
    task_->Exec();
    // The page behind the stored one is asked for by the record's own count, which starts over.
    EXPECT_EQ(Lines(Trace(), "GetExportPicDataList"), R"(
GetExportPicDataList POST /persons {"PageIndex":7,"PageSize":2}
GetExportPicDataList POST /persons {"PageIndex":2,"PageSize":2}
)");
}

TEST_F(TaskResumeTest, TextThatIsNoRecordGivesFalseAndTouchesNothing)
{
    ASSERT_TRUE(ResumeXml(Golden("resume-plain.xml")));
    const auto before = task_;
    for (const std::string& text : {std::string(), std::string("*"), Encoded("no xml"), Encoded("<a>"),
                                    Encoded("<FileExportParams><TaskParamType>1</TaskParamType>")}) {
        fakes::Take();
        EXPECT_FALSE(CDownloadBussinessManager::Instance().ResumeDownloadTask(task_, text)) << text;
        EXPECT_EQ(task_, before);
        EXPECT_EQ(Trace(), "\n");
    }
}

TEST_F(TaskResumeTest, UnknownTypeGivesTrueAndTouchesNothing)
{
    ASSERT_TRUE(ResumeXml(Golden("resume-plain.xml")));
    const auto before = task_;
    for (const char* const type : {"<TaskParamType>0</TaskParamType>", "<TaskParamType>2</TaskParamType>",
                                   "<TaskParamType>4</TaskParamType>", "<TaskParamType>-1</TaskParamType>",
                                   "<TaskParamType>99999999999999999999</TaskParamType>", "<Other/>", ""}) {
        fakes::Take();
        EXPECT_TRUE(CDownloadBussinessManager::Instance().ResumeDownloadTask(
            task_, Encoded(std::string("<FileExportParams>") + type + "</FileExportParams>")))
            << type;
        EXPECT_EQ(task_, before) << type;
        EXPECT_EQ(Trace(), "\n") << type;
    }
    EXPECT_TRUE(CDownloadBussinessManager::Instance().ResumeDownloadTask(
        task_, Encoded("<Another><TaskParamType>1</TaskParamType></Another>")));
    EXPECT_EQ(task_, before);
}

// Records as a disk or another program may leave them: whatever happens, there is an answer, and a task where
// the answer says so.
TEST_F(TaskResumeTest, RecordCutAtEveryByteIsRefusedOrComesBack)
{
    fakes::SetRecording(false);
    for (const char* const name :
         {"resume-plain.xml", "resume-full.xml", "resume-person.xml", "resume-person-password.xml"}) {
        const std::string xml = Golden(name);
        const std::string record = Encoded(xml);
        for (std::size_t size = 0; size < record.size(); ++size) {
            if (Resume(record.substr(0, size)))
                ASSERT_NE(task_, nullptr) << name << " " << size;
            else
                ASSERT_EQ(task_, nullptr) << name << " " << size;
        }
        for (std::size_t size = 0; size < xml.size(); ++size)
            ASSERT_FALSE(ResumeXml(xml.substr(0, size))) << name << " " << size;
    }
}

// The elements that stand directly below the root, as pairs of name and whole text.
std::vector<std::pair<std::string, std::string>> ElementsOf(const std::string& xml)
{
    const std::string root = "<FileExportParams>";
    std::vector<std::pair<std::string, std::string>> elements;
    std::size_t at = xml.find(root) + root.size();
    while (xml.compare(at, 2, "</") != 0) {
        const std::string name = xml.substr(at + 1, xml.find_first_of("/>", at) - at - 1);
        const bool is_empty = xml.compare(at + 1 + name.size(), 2, "/>") == 0;
        const std::string close = is_empty ? "/>" : "</" + name + ">";
        const std::size_t end = xml.find(close, at) + close.size();
        elements.emplace_back(name, xml.substr(at, end - at));
        at = end;
    }
    return elements;
}

TEST_F(TaskResumeTest, RecordWithoutAnyOneOfItsElementsComesBack)
{
    for (const char* const name : {"resume-plain.xml", "resume-full.xml", "resume-person.xml"}) {
        const std::string xml = Golden(name);
        const auto elements = ElementsOf(xml);
        ASSERT_GE(elements.size(), 9U);
        for (const auto& [element, text] : elements) {
            std::string shorter = xml;
            shorter.erase(shorter.find(text), text.size());
            EXPECT_TRUE(ResumeXml(shorter)) << element;
            EXPECT_EQ(task_ == nullptr, element == "TaskParamType") << element;
        }
    }
}

TEST_F(TaskResumeTest, RecordWithHugeNumbersComesBack)
{
    for (const char* const number :
         {"99999999999999999999", "-99999999999999999999", "2147483648", "1e400", "0x10", "NaN", " 7 "}) {
        for (const char* const name : {"resume-full.xml", "resume-person.xml"}) {
            std::string xml = Golden(name);
            for (const auto& [element, text] : ElementsOf(xml)) {
                if (element != "TaskParamType" && text.find('>') + 1 < text.size() && text.back() == '>' &&
                    text.find_first_of("0123456789") == text.find('>') + 1)
                    xml.replace(xml.find(text), text.size(),
                                "<" + element + ">" + number + "</" + element + ">");
            }
            ASSERT_NE(xml, Golden(name));
            EXPECT_TRUE(ResumeXml(xml)) << number;
            EXPECT_NE(task_, nullptr) << number;
        }
    }
}

TEST_F(TaskResumeTest, RecordUnderTheTypeOfAnotherComesBackAsThatOther)
{
    std::string xml = Golden("resume-plain.xml");
    const std::string type = "<TaskParamType>1<";
    xml.replace(xml.find(type), type.size(), "<TaskParamType>3<");
    ASSERT_TRUE(ResumeXml(xml));
    EXPECT_EQ(Person().str_request_api, "/api/v1/events/report");
    EXPECT_EQ(Person().str_zip_name, "ExportFile_20260131_235959");
    xml = Golden("resume-person.xml");
    const std::string person_type = "<TaskParamType>3<";
    xml.replace(xml.find(person_type), person_type.size(), "<TaskParamType>1<");
    ASSERT_TRUE(ResumeXml(xml));
    EXPECT_EQ(Composite().str_request_api, "/api/v1/persons/report");
    EXPECT_EQ(Composite().file_operate_type, -1);
}

TEST_F(TaskResumeTest, ElementsOfALaterVersionArePassedOver)
{
    std::string xml = Golden("resume-person.xml");
    const std::string type = "<TaskParamType>3</TaskParamType>";
    xml.replace(xml.find(type), type.size(),
                "<Version>9</Version><New a='b'><Deep><ZipName>not this</ZipName></Deep></New>" + type);
    ASSERT_TRUE(ResumeXml(xml));
    EXPECT_EQ(Person().str_zip_name, "Anna 大门");
}

TEST_F(TaskResumeTest, RecordOfAResumedTaskSaysTheSameAgain)
{
    ASSERT_TRUE(ResumeXml(Golden("resume-person.xml")));
    EXPECT_EQ(Decoded(Record<DownloadPersonPicTaskParam>().CreateResumeXml()), Golden("resume-person.xml"));
}

}  // namespace
}  // namespace contract
