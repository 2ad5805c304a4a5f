#include "ui/InspectColumns.h"

#include "ui/ChoiceList.h"
#include "ui/inspectMarks.h"
#include "ui/lists.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using inspection::Column;

namespace {

enum ListColumn { NameColumn, StateColumn, SourceColumn, ValuesColumn, FeedsColumn };

const QString NotThere = QStringLiteral("(non c'è nella sorgente)");

/// A list of names of the source: first those that are suggested, each with its ground, then the others.
void FillNames(QComboBox& list, const std::vector<inspection::Suggestion>& suggestions, const QStringList& others) {
    list.clear();
    for (const inspection::Suggestion& each : suggestions) {
        list.addItem(each.name + " - " + inspection::GroundText(each), each.name);
    }
    for (const QString& name : others) {
        if (list.findData(name) < 0) {
            list.addItem(name, name);
        }
    }
}

QHBoxLayout* NewRow(QLabel* label, QComboBox* list, QPushButton* button) {
    label->setBuddy(list);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(list, 1);
    row->addWidget(button);
    return row;
}

} // namespace

InspectColumns::InspectColumns(QWidget* parent)
    : QWidget(parent) {
    m_tableName = lists::NewNameList("cmbTableName", "Tabella della sorgente");
    m_useTable = lists::NewButton("cmdUseTable", "&Usa la tabella", {});
    connect(m_useTable, &QPushButton::clicked, this,
            [this] { emit Chosen(m_table.name, m_tableName->currentData().toString()); });
    m_columns = new QTreeWidget;
    m_columns->setObjectName("lstColumns");
    m_columns->setAccessibleName("Colonne che l'origine legge");
    m_columns->setHeaderLabels({"Colonna", "Stato", "Nella sorgente", "Valori", "Alimenta"});
    m_columns->setRootIsDecorated(false);
    m_columns->setUniformRowHeights(true);
    m_columns->setAllColumnsShowFocus(true);
    connect(m_columns, &QTreeWidget::currentItemChanged, this, [this] { ShowColumn(); });
    m_label = new QLabel("Co&lonna:");
    m_columnName = lists::NewNameList("cmbColumnName", "Colonna della sorgente");
    m_useColumn = lists::NewButton("cmdUseColumn", "Usa la c&olonna", {});
    connect(m_useColumn, &QPushButton::clicked, this, [this] {
        if (const Column* column = Current()) {
            emit Chosen(m_table.name + '.' + column->name, m_columnName->currentData().toString());
        }
    });
    auto* all = new QVBoxLayout(this);
    all->addLayout(NewRow(new QLabel("&Tabella nella sorgente:"), m_tableName, m_useTable));
    all->addWidget(m_columns, 1);
    all->addLayout(NewRow(m_label, m_columnName, m_useColumn));
}

void InspectColumns::Show(const inspection::Table* table, const QStringList& others, bool onlyMissing) {
    const bool isSame = table != nullptr && table->name == m_table.name;
    const Column* before = isSame ? Current() : nullptr;
    const QString chosen = before == nullptr ? QString() : before->name;
    m_table = table == nullptr ? inspection::Table{} : *table;
    setEnabled(table != nullptr);
    FillTableNames(others);
    FillColumns(onlyMissing);
    const QList<QTreeWidgetItem*> kept = m_columns->findItems(chosen, Qt::MatchExactly, NameColumn);
    m_columns->setCurrentItem(!kept.isEmpty() ? kept.first() : m_columns->topLevelItem(0));
    ShowColumn();
}

void InspectColumns::FillTableNames(const QStringList& others) {
    FillNames(*m_tableName, m_table.suggestions, others);
    if (m_table.isFound) {
        m_tableName->insertItem(0, m_table.inSource, m_table.inSource);
        m_tableName->setCurrentIndex(0);
    }
}

void InspectColumns::FillColumns(bool onlyMissing) {
    const QSignalBlocker quiet(m_columns);
    m_columns->clear();
    for (const Column& column : m_table.columns) {
        if (onlyMissing && !column.IsMissing()) {
            continue;
        }
        const inspection::Suggestion* proposed = inspection::Proposed(column.suggestions);
        const QString own = !column.IsMissing() ? column.inSource : proposed == nullptr ? QString() : proposed->name;
        auto* item =
            new QTreeWidgetItem(m_columns, {column.name, inspection::StateText(column), inspection::SourceText(column),
                                            inspection::ValuesText(m_table, own), column.feeds.join(", ")});
        inspectMarks::Show(*item, StateColumn, inspection::MarkOf(column));
        for (int each = NameColumn; each <= FeedsColumn; ++each) {
            item->setToolTip(each, item->text(each));
        }
        item->setToolTip(NameColumn, column.name + ": letta da " + column.procedures.join(", "));
    }
    inspectMarks::FitColumns(*m_columns);
}

const Column* InspectColumns::Current() const {
    const QTreeWidgetItem* item = m_columns->currentItem();
    const auto found = std::find_if(m_table.columns.begin(), m_table.columns.end(), [item](const Column& column) {
        return item != nullptr && column.name == item->text(NameColumn);
    });
    return found == m_table.columns.end() ? nullptr : &*found;
}

/// A name can be chosen for a column of a table that is found; for one that is only suggested too, with the table.
void InspectColumns::ShowColumn() {
    const Column* column = Current();
    m_columnName->setEnabled(column != nullptr);
    m_useColumn->setEnabled(column != nullptr && m_table.isFound);
    m_useColumn->setToolTip(m_table.isFound ? QString() : QString("Prima scegliere la tabella"));
    m_label->setText(column == nullptr ? QString("Co&lonna:") : QString("Co&lonna per " + column->name + ':'));
    QStringList own;
    for (const inspection::OwnColumn& each : m_table.own) {
        own.append(each.name);
    }
    FillNames(*m_columnName, column == nullptr ? std::vector<inspection::Suggestion>() : column->suggestions, own);
    m_columnName->addItem(NotThere, QString());
    if (column != nullptr && !column->IsMissing()) {
        m_columnName->setCurrentIndex(m_columnName->findData(column->inSource));
    } else if (column != nullptr && column->isMarkedMissing) {
        m_columnName->setCurrentIndex(m_columnName->count() - 1);
    }
}
