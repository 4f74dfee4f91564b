#include "FetchyardBussiness/DeterminantWriteFile/PictureScale.h"
#include "FetchyardBussiness/DeterminantWriteFile/ReportExportExcel.h"
#include "FetchyardBussiness/Log.h"
#include "ZellWidgets/ZellWidgets.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>

#include <algorithm>

namespace FetchyardBussiness {

namespace {

constexpr double kMetresPerInch = 0.0254;
constexpr unsigned char kMoveAndSizeWithCell = 1;

// The longer side is as long as the box's afterwards. A file that is no picture is not caught: an empty
// picture is placed with no size, and the workbook ignores it.
void FitIntoBox(const QString& file, const QSize& box)
{
    QImage picture;
    picture.load(file);
    picture = picture.scaled(box, Qt::KeepAspectRatio, Qt::FastTransformation);
    picture.save(file);
}

std::string JpegBytes(const QImage& picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (buffer.open(QIODevice::WriteOnly))
        picture.save(&buffer, "jpg");
    return bytes.toStdString();
}

std::shared_ptr<ZellOfficeKit::Clxw_image_options_> OptionsOf(const QImage& picture)
{
    PictureShape shape;
    shape.width = picture.width();
    shape.height = picture.height();
    shape.dots_per_inch = picture.dotsPerMeterX() * kMetresPerInch;
    const PictureScale scale = ScaleOfPicture(shape, DisplayScalePercentage());
    auto options = std::make_shared<ZellOfficeKit::Clxw_image_options_>();
    options->SetVal_x_scale(scale.x);
    options->SetVal_y_scale(scale.y);
    options->SetVal_object_position(kMoveAndSizeWithCell);
    return options;
}

}  // namespace

// The picture goes through a staging file, which is deleted when the workbook has been closed.
void CExportReportDataToEXCELFileObject::EmbedPicture(const ExportDataNode& excel_data,
                                                      const ExportCell& cell, Position& position)
{
    if (cell.cell_name.empty()) {
        LogError(" failed itea_column->cell_name = %s  can not contain *PictureRequest*",
                 cell.cell_name.c_str());
        return;
    }
    const std::string target = excel_data.file_save_path + std::to_string(position.row) + "_" +
                               std::to_string(position.column) + ".jpg";
    Zell::Base::Error::ErrorCode error;
    if (!FetchPictureCell(excel_data, cell, target, error))
        return;
    PlacePicture(target, position);
    temp_picture_files_.push_back(target);
}

void CExportReportDataToEXCELFileObject::PlacePicture(const std::string& file, Position& position)
{
    const QString path = ZellWidgets::StringToQString(file, nullptr);
    FitIntoBox(path, picture_size_);
    QImage picture;
    picture.load(path);
    const std::string bytes = JpegBytes(picture);
    const auto options = OptionsOf(picture);
    const int column = position.column;
    position.tallest_picture = std::max(position.tallest_picture, picture.height());
    ptr_excel_controller_->SetRowHeightWithPixels(position.row, picture.height());
    ptr_excel_controller_->SetColumnWidthtWithPixels(column, column, picture.width());
    if (!column_pixel_widths_.contains(column) || column_pixel_widths_.value(column) < picture.width())
        column_pixel_widths_.insert(column, picture.width());
    ptr_excel_controller_->SetColumnPicsBufferOpt(position.row, column, bytes, options);
}

}  // namespace FetchyardBussiness
