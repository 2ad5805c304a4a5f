#include "ui/CodePreview.h"

#include "app/report/names.h"
#include "core/Operator.h"
#include "ui/lists.h"
#include "ui/ReviewDialog.h"
#include "ui/windowPlace.h"
#include "ui/WrappedLabel.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

constexpr int WidthInCharacters = 130;
constexpr int HeightInLines = 30;
constexpr size_t MostShown = 5000; ///< cells; the words above count them all
constexpr qsizetype MostLines = 8; ///< lines of codes that are seen at once

QString NotEmpty(const QString& value) { return value.isEmpty() ? QString("(vuoto)") : value; }

QStringList CellsOf(const codes::CellChange& cell) {
    if (cell.column.isEmpty()) {
        return {cell.table, cell.row, "(tutta la riga)", cell.before.isEmpty() ? "" : "c'è",
                cell.after.isEmpty() ? "si toglie" : "nuova"};
    }
    const QString title = proof::ColumnTitle(cell.column);
    return {cell.table, cell.row, title == cell.column ? title : QString("%1 (%2)").arg(title, cell.column),
            NotEmpty(cell.before), NotEmpty(cell.after)};
}

QTableWidget* NewTable(const codes::Preview& preview) {
    auto* table = new QTableWidget;
    table->setObjectName("tblCells");
    table->setAccessibleName("Celle che cambierebbero");
    QVector<QStringList> rows;
    for (size_t place = 0; place < std::min(preview.cells.size(), MostShown); ++place) {
        rows.append(CellsOf(preview.cells[place]));
    }
    lists::Fill(*table, {"Tabella", "Riga", "Colonna", "Adesso", "Diventa"}, rows);
    return table;
}

/// As high as its lines, but for many: beneath them the cells and the question must be seen.
QPlainTextEdit* NewCodes(const QStringList& lines) {
    auto* list = NewReviewList(lines);
    list->setObjectName("txtCodes");
    list->setAccessibleName("Codici da applicare");
    list->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    const int shown = static_cast<int>(std::min(2 * lines.size(), MostLines)); // each may want two
    list->setFixedHeight(list->fontMetrics().lineSpacing() * shown + 2 * list->frameWidth() +
                         static_cast<int>(2 * list->document()->documentMargin()));
    return list;
}

} // namespace

CodePreview::CodePreview(const QStringList& lines, const codes::Preview& preview, QWidget* parent)
    : QDialog(parent) {
    setObjectName("dlgCodePreview");
    setWindowTitle("Applicare i codici");
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    QString text = preview.Text();
    if (preview.cells.size() > MostShown) {
        text += QString(" (le prime %1 sono qui)").arg(MostShown);
    }
    auto* question = new WrappedLabel(text + "\n\nImportare di nuovo queste righe? (la prova non ha scritto nulla)");
    question->setObjectName("lblQuestion");
    auto* all = new QVBoxLayout(this);
    all->addWidget(NewCodes(lines));
    all->addWidget(NewTable(preview), 1);
    all->addWidget(question);
    all->addWidget(YesAndNo(*this));
    windowPlace::SizeTo(*this, WidthInCharacters, HeightInLines);
}
