#include "Report/PictureKeys.h"

#include <gtest/gtest.h>

using namespace FetchyardLogical;

namespace {

ExportCell Cell(const char* address, int type, unsigned int station = ExportCell::kPageWorkStation)
{
    ExportCell cell;
    cell.cell_name = address;
    cell.cell_format.cell_type = type;
    cell.work_station_id = station;
    return cell;
}

ExportDataNode PageOf(std::vector<ExportCell> row)
{
    ExportDataNode page;
    page.work_station_id = 5;
    page.vec_sheets.resize(1);
    page.vec_sheets[0].vec_rows.push_back(std::move(row));
    return page;
}

}  // namespace

TEST(PictureKeys, AKeyIsTheOneThatTheWriterBuilds)
{
    const auto keys = details::PictureKeys(PageOf({Cell("/pictures/1.jpg?a=1?b=2", 2, 0)}));
    ASSERT_EQ(keys.size(), 1u);
    EXPECT_EQ(keys[0]->GetValstrImageUrl(), "/pictures/1.jpg?a=1?b=2");
    EXPECT_EQ(keys[0]->GetValstr_request(), "a=1?b=2");
    EXPECT_EQ(static_cast<int>(keys[0]->GetValurl_type()), 1);
    EXPECT_TRUE(keys[0]->GetValb_save_cache());
    EXPECT_EQ(keys[0]->GetValidWorkStation(), 0u);
    EXPECT_EQ(static_cast<int>(keys[0]->GetValaccess_type()), 0);
    EXPECT_FALSE(keys[0]->GetValis_Thumbnail_image());
}

TEST(PictureKeys, WithoutAQuestionMarkTheRequestIsTheWholeAddress)
{
    const auto keys = details::PictureKeys(PageOf({Cell("/pictures/1.jpg", 3)}));
    ASSERT_EQ(keys.size(), 1u);
    EXPECT_EQ(keys[0]->GetValstrImageUrl(), "/pictures/1.jpg");
    EXPECT_EQ(keys[0]->GetValstr_request(), "/pictures/1.jpg");
    EXPECT_EQ(keys[0]->GetValidWorkStation(), 5u);
}

TEST(PictureKeys, OnlyCacheablePictureCellsHaveAKey)
{
    const auto keys = details::PictureKeys(
        PageOf({Cell("/a.jpg", 0), Cell("/b.jpg", 1), Cell("/c.jpg", 2), Cell("", 2), Cell("/d?QUERN&e=1", 3),
                Cell("/e.jpg", 4), Cell("/f.jpg", 6), Cell("/g.jpg", 3)}));
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_EQ(keys[0]->GetValstrImageUrl(), "/c.jpg");
    EXPECT_EQ(keys[1]->GetValstrImageUrl(), "/g.jpg");
}

TEST(PictureKeys, ATextReportHasNone)
{
    ExportDataNode page = PageOf({Cell("/a.jpg", 2)});
    page.export_file_type = 3;
    EXPECT_TRUE(details::PictureKeys(page).empty());
}

TEST(PictureKeys, TitlesAndColumnsHaveNone)
{
    ExportDataNode page;
    page.vec_sheets.resize(1);
    page.vec_sheets[0].vec_titles.push_back(Cell("/a.jpg", 2));
    page.vec_sheets[0].vec_columns.push_back(Cell("/b.jpg", 2));
    EXPECT_TRUE(details::PictureKeys(page).empty());
}
