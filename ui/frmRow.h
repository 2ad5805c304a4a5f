#pragma once

#include "app/history/rowDetails.h"

#include <QDialog>

class QTabWidget;

/// A row that a run told of: the values that its source has, and what stands in Quadrix beside the columns and the rule
/// that it comes from, table by table.
class frmRow final : public QDialog {
    Q_OBJECT

public:
    frmRow(const history::Note& note, const history::RowDetails& details, QWidget* parent);

private:
    QWidget* NewSource(const history::RowDetails& details);
    QTabWidget* NewTargets(const history::RowDetails& details);
};
