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
/// Changes the layout file, and tells what is wrong when it stays as it was. @param change returns that, or raises it;
/// empty when all is well @return whether it was changed
bool ChangeOrTell(Operator& person, const std::function<QString()>& change);

} // namespace inspectMarks
