#pragma once

#include "FetchyardLogicalHost/EngineHost.h"

#include <QDialog>

#include <vector>

namespace FetchyardClient {

// Which files some tasks could not get, and why. They can be copied.
class FailedFilesDialog final : public QDialog
{
    Q_OBJECT

public:
    FailedFilesDialog(const std::vector<FetchyardLogical::TaskView>& tasks, QWidget* parent);

private:
    void Copy() const;

    QStringList lines_;
};

}  // namespace FetchyardClient
