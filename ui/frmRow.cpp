#include "ui/frmRow.h"

#include "sql/mod_ovTools.h"
#include "sql/visibleText.h"
#include "ui/lists.h"
#include "ui/windowPlace.h"
#include "ui/WrappedLabel.h"

#include <QGroupBox>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTableWidget>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr int RowWidth = 150; ///< characters
constexpr int RowHeight = 32; ///< lines

QTableWidget* NewTable(const QString& name, const QString& accessibleName, const QStringList& headings,
                       const QVector<QStringList>& rows) {
    auto* table = new QTableWidget;
    table->setObjectName(name);
    table->setAccessibleName(accessibleName);
    lists::Fill(*table, headings, rows);
    return table;
}

/// A table under a line that says what is missing, where something is.
QWidget* Under(const QString& trouble, QWidget* table) {
    if (trouble.isEmpty()) {
        return table;
    }
    auto* both = new QWidget;
    auto* all = new QVBoxLayout(both);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(new WrappedLabel(trouble));
    all->addWidget(table, 1);
    return both;
}

} // namespace

frmRow::frmRow(const history::Note& note, const history::RowDetails& details, QWidget* parent)
    : QDialog(parent) {
    setObjectName("frmRow");
    setWindowTitle(QStringLiteral("Riga dell'origine"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    auto* head = new WrappedLabel(VisibleText(QStringLiteral("%1\n%2: %3").arg(note.row, note.kind, note.text)));
    head->setObjectName("lblRow");
    auto* parts = new QSplitter;
    parts->setChildrenCollapsible(false);
    parts->addWidget(NewSource(details));
    parts->addWidget(NewTargets(details));
    const int width = fontMetrics().averageCharWidth() * RowWidth;
    parts->setSizes({width / 3, width * 2 / 3});
    auto* close = lists::NewButton("cmdClose", "C&hiudi", {});
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* all = new QVBoxLayout(this);
    all->addWidget(head);
    all->addWidget(parts, 1);
    all->addWidget(close, 0, Qt::AlignRight);
    resize(windowPlace::Fitted({width, fontMetrics().lineSpacing() * RowHeight}, screen()->availableSize()));
}

QWidget* frmRow::NewSource(const history::RowDetails& details) {
    QVector<QStringList> rows;
    for (const history::NamedValue& each : details.source) {
        rows.append({each.name, VisibleLine(mod_ovTools::ToText(each.value))});
    }
    auto* group = new QGroupBox("Nella sorgente");
    auto* all = new QVBoxLayout(group);
    all->addWidget(Under(details.sourceTrouble,
                         NewTable("tblSource", "Valori della riga della sorgente", {"Colonna", "Valore"}, rows)));
    return group;
}

QTabWidget* frmRow::NewTargets(const history::RowDetails& details) {
    auto* tabs = new QTabWidget;
    tabs->setObjectName("tabTargets");
    for (const history::RowDetails::Target& target : details.targets) {
        QVector<QStringList> rows;
        for (const history::RowDetails::Field& field : target.fields) {
            rows.append(
                {field.column, VisibleLine(field.value), field.sources, VisibleLine(field.sourceValue), field.rule});
        }
        auto* table = NewTable("tblTarget", "Riga di Quadrix e da che cosa viene",
                               {"Campo", "In Quadrix", "Colonna", "Nella sorgente", "Regola"}, rows);
        tabs->addTab(Under(target.trouble, table), target.table);
    }
    if (tabs->count() == 0) {
        tabs->addTab(new WrappedLabel("La procedura non dice quali campi riempie da questa tabella."), "Quadrix");
    }
    return tabs;
}
