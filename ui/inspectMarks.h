#pragma once

#include "app/inspect_texts.h"

class QTreeWidget;
class QTreeWidgetItem;

/// What the lists of the dialog that shows a source have in common.
namespace inspectMarks {

/// Marks an item by what is found: a sign, and a colour that both palettes can show; the text of the state stays.
void Show(QTreeWidgetItem& item, int column, inspection::Mark mark);
/// Columns as wide as what stands in them, none wider than a third of the list.
void FitColumns(QTreeWidget& list);

} // namespace inspectMarks
