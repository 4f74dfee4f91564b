#include "ZellTaskKit/DownloadProgress.h"
#include "ZellTaskKit/DownloadTaskParam.h"
#include "ZellTaskKit/TaskCallbackParam.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using ZellTaskKit::CDownloadTaskParam;

TEST(TaskParam, ANewRecordHasTheDefaults)
{
    CDownloadTaskParam param;
    EXPECT_EQ(param.GetVal_str_guid(), "");
    EXPECT_EQ(param.GetVal_file_type(), ZellTaskKit::VideoFile);
    EXPECT_EQ(param.GetVal_state(), ZellTaskKit::Unstarted);
    EXPECT_EQ(param.GetVal_open_type(), ZellTaskKit::OpenNothing);
    EXPECT_EQ(param.GetVal_operate_time(), 0);
    EXPECT_EQ(param.GetVal_file_size(), 0U);
    EXPECT_FALSE(param.GetVal_b_enable_percent());
    EXPECT_FALSE(param.GetVal_b_enable_speed());
    EXPECT_FALSE(param.GetVal_b_enable_remain_time());
    EXPECT_FALSE(param.GetVal_b_enable_size());
    EXPECT_FALSE(param.GetVal_b_show_tip());
    EXPECT_FALSE(param.GetIsExportSensitiveInfo());
    EXPECT_TRUE(param.GetDownloadFileNames().empty());
    EXPECT_EQ(param.GetVal_error_().iFirstCode, 0);
    EXPECT_FALSE(param.ResumeParamFromXml());
    EXPECT_EQ(param.CreateResumeXml(), "");
}

void Fill(CDownloadTaskParam& param)
{
    param.SetVal_str_guid("guid");
    param.SetVal_str_name("name");
    param.SetVal_str_file_path("path");
    param.SetVal_str_plugin_id("plugin");
    param.SetVal_str_resume_xml("resume");
    param.SetVal_str_search_xml("search");
    param.SetVal_reserve_data("reserve");
    param.SetVal_file_type(ZellTaskKit::ServerFile);
    param.SetVal_state(ZellTaskKit::Uploading);
    param.SetVal_open_type(ZellTaskKit::OpenFolder);
    param.SetVal_operate_time(5000000000LL);
    param.SetVal_file_size(6000000000ULL);
    param.SetVal_b_enable_percent(true);
    param.SetVal_b_enable_speed(true);
    param.SetVal_b_enable_remain_time(true);
    param.SetVal_b_enable_size(true);
    param.SetVal_b_show_tip(true);
    param.SetVal_error_(Zell::Base::Error::ErrorCode(2, 20, 3605));
    param.SetDownloadFileNames({"a", "b"});
    param.SetIsExportSensitiveInfo(true);
}

void ExpectFilled(const CDownloadTaskParam& param)
{
    EXPECT_EQ(param.GetVal_str_guid(), "guid");
    EXPECT_EQ(param.GetVal_str_name(), "name");
    EXPECT_EQ(param.GetVal_str_file_path(), "path");
    EXPECT_EQ(param.GetVal_str_plugin_id(), "plugin");
    EXPECT_EQ(param.GetVal_str_resume_xml(), "resume");
    EXPECT_EQ(param.GetVal_str_search_xml(), "search");
    EXPECT_EQ(param.GetVal_reserve_data(), "reserve");
    EXPECT_EQ(param.GetVal_file_type(), ZellTaskKit::ServerFile);
    EXPECT_EQ(param.GetVal_state(), ZellTaskKit::Uploading);
    EXPECT_EQ(param.GetVal_open_type(), ZellTaskKit::OpenFolder);
    EXPECT_EQ(param.GetVal_operate_time(), 5000000000LL);
    EXPECT_EQ(param.GetVal_file_size(), 6000000000ULL);
    EXPECT_TRUE(param.GetVal_b_enable_percent());
    EXPECT_TRUE(param.GetVal_b_enable_speed());
    EXPECT_TRUE(param.GetVal_b_enable_remain_time());
    EXPECT_TRUE(param.GetVal_b_enable_size());
    EXPECT_TRUE(param.GetVal_b_show_tip());
    EXPECT_EQ(param.GetVal_error_().iFirstCode, 20);
    EXPECT_EQ(param.GetVal_error_().iSecondCode, 3605);
    EXPECT_EQ(param.GetDownloadFileNames(), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(param.GetIsExportSensitiveInfo());
}

TEST(TaskParam, CopiesAndAssignmentsHoldAllFields)
{
    CDownloadTaskParam param;
    Fill(param);
    ExpectFilled(param);
    const CDownloadTaskParam copy(param);
    ExpectFilled(copy);
    CDownloadTaskParam assigned;
    assigned = param;
    ExpectFilled(assigned);
    const CDownloadTaskParam& same = assigned;
    assigned = same;
    ExpectFilled(assigned);
}

TEST(TaskParam, TwoRecordsMayBeAssignedToEachOtherWhileTheyAreRead)
{
    CDownloadTaskParam left;
    CDownloadTaskParam right;
    Fill(left);
    Fill(right);
    std::thread one([&] {
        for (int i = 0; i < 1000; ++i)
            left = right;
    });
    std::thread two([&] {
        for (int i = 0; i < 1000; ++i)
            right = left;
    });
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(left.GetVal_str_name(), "name");
        right.SetVal_str_name("name");
    }
    one.join();
    two.join();
    ExpectFilled(left);
}

TEST(TaskParam, ProgressHoldsKilobytes)
{
    ZellTaskKit::CDownloadProgress progress;
    EXPECT_EQ(progress.GetVal_finished_size(), 0U);
    progress.SetVal_finished_size(7);
    const ZellTaskKit::CDownloadProgress copy(progress);
    EXPECT_EQ(copy.GetVal_finished_size(), 7U);
}

TEST(TaskParam, AReportHoldsGuidStateAndError)
{
    const ZellTaskKit::CTaskCallbackParam report("guid", ZellTaskKit::Failed,
                                                 Zell::Base::Error::ErrorCode(2, 20, 3));
    const ZellTaskKit::CTaskCallbackParam copy(report);
    EXPECT_EQ(copy.GetVal_task_guid(), "guid");
    EXPECT_EQ(copy.GetVal_state(), 5);
    EXPECT_EQ(copy.GetVal_error_code().iFirstCode, 20);
    EXPECT_EQ(copy.GetVal_error_code().iSecondCode, 3);
}

}  // namespace
