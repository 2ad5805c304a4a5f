#include "ui/InspectFurther.h"

#include "adapters/contract/map/ruleNames.h"
#include "ui/ChoiceList.h"
#include "ui/inspectMarks.h"
#include "ui/lists.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

InspectFurther::InspectFurther(Session& session, const contract::Origin& origin, QWidget* parent)
    : QWidget(parent),
      m_session(session),
      m_origin(origin) {
    Lay();
}

void InspectFurther::Lay() {
    m_filter = new QLineEdit;
    m_filter->setObjectName("txtFilter");
    m_filter->setAccessibleName("Condizione sulle righe");
    m_filter->setPlaceholderText("nei nomi della sorgente, per esempio SOCIETA = '01'");
    auto* setFilter = lists::NewButton("cmdSetFilter", "Scrivi il f&iltro", {});
    connect(setFilter, &QPushButton::clicked, this, [this] { Change([this] { return WriteFilter(); }); });
    connect(m_filter, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (text.trimmed() == m_written) {
            m_typed.remove(m_table);
        } else {
            m_typed.insert(m_table, text.trimmed());
        }
    });
    auto* filterRow = new QHBoxLayout;
    auto* filterLabel = new QLabel("Righe da &leggere:");
    filterLabel->setBuddy(m_filter);
    filterRow->addWidget(filterLabel);
    filterRow->addWidget(m_filter, 1);
    filterRow->addWidget(setFilter);
    m_added = new QTreeWidget;
    m_added->setObjectName("lstAdded");
    m_added->setAccessibleName("Altri campi di Quadrix");
    m_added->setHeaderLabels({"Campo di Quadrix", "Da dove viene"});
    m_added->setRootIsDecorated(false);
    m_target = lists::NewNameList("cmbTarget", "Campo di Quadrix");
    m_source = lists::NewNameList("cmbSource", "Colonna della sorgente, o una costante");
    m_source->setEditable(true);
    m_source->setInsertPolicy(QComboBox::NoInsert);
    m_rule = lists::NewNameList("cmbRule", "Regola");
    m_rule->setEditable(true);
    m_rule->setInsertPolicy(QComboBox::NoInsert);
    m_rule->addItem(QString());
    m_rule->addItems(contract::RuleForms());
    auto* add = lists::NewButton("cmdAdd", "Aggi&ungi", {});
    connect(add, &QPushButton::clicked, this, [this] {
        Change([this] { return inspection::SetAdded(m_session, m_origin, m_target->currentText(), NewValue()); });
    });
    auto* remove = lists::NewButton("cmdRemove", "&Elimina", {});
    connect(remove, &QPushButton::clicked, this, [this] {
        if (const QTreeWidgetItem* item = m_added->currentItem()) {
            Change([this, item] { return inspection::RemoveAdded(m_session, m_origin, item->text(0)); });
        }
    });
    auto* lines = new QFormLayout;
    lines->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    lines->addRow("Ca&mpo di Quadrix:", m_target);
    lines->addRow("&Da (colonna o costante:valore):", m_source);
    lines->addRow("&Regola (vuota: la solita):", m_rule);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(remove);
    buttons->addWidget(add);
    auto* all = new QVBoxLayout(this);
    all->addLayout(filterRow);
    all->addWidget(m_added, 1);
    all->addLayout(lines);
    all->addLayout(buttons);
}

void InspectFurther::Show(const inspection::Table* table) {
    m_table = table == nullptr ? QString() : table->name;
    setEnabled(table != nullptr && table->isFound);
    m_target->clear();
    m_source->clear();
    if (table == nullptr) {
        return;
    }
    m_target->addItems(inspection::FreeTargets(m_origin, m_table));
    for (const inspection::OwnColumn& own : table->own) {
        m_source->addItem(own.name);
    }
    FillAdded();
}

void InspectFurther::FillAdded() {
    m_added->clear();
    inspection::Further further;
    try {
        further = inspection::ReadFurther(m_session, m_origin, m_table);
    } catch (const ImportError&) {
        further = {}; // the head of the dialog tells what is wrong with the file
    }
    m_written = further.filter;
    m_filter->setText(m_typed.value(m_table, m_written));
    for (const auto& [target, value] : further.added) {
        new QTreeWidgetItem(m_added, {target, value});
    }
    inspectMarks::FitColumns(*m_added);
}

QString InspectFurther::NewValue() const {
    return inspection::AddedValue(m_table, m_source->currentText(), m_rule->currentText());
}

QString InspectFurther::WriteFilter() {
    const QString trouble = inspection::SetFilter(m_session, m_origin, m_table, m_filter->text());
    if (trouble.isEmpty()) {
        m_typed.remove(m_table);
    }
    return trouble;
}

QStringList InspectFurther::Unwritten() const {
    QStringList lines;
    for (const auto& [table, condition] : m_typed.asKeyValueRange()) {
        lines.append(table + ": " + (condition.isEmpty() ? QString("(nessuna)") : condition));
    }
    return lines;
}

void InspectFurther::Change(const std::function<QString()>& change) {
    if (inspectMarks::ChangeOrTell(m_session.Person, change)) {
        emit Changed();
    }
}
