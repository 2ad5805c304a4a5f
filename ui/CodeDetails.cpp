#include "ui/CodeDetails.h"

#include "ui/lists.h"
#include "ui/WrappedLabel.h"

#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using namespace codes;

namespace {

constexpr int MostChoices = 5000; ///< that the list of codes shows; more are typed

QString RowsText(const Code& code) {
    if (!code.waiting) {
        return "Righe che lo attendono: nessuna importazione conservata lo ha incontrato.";
    }
    QString text = QString("Righe che lo attendono: %1").arg(code.waiting->rows);
    for (const QString& row : code.waiting->first) {
        text += "\n  " + row;
    }
    return text;
}

QString AboutText(const Code& code, const CodeList& list) {
    QStringList lines{
        QString("Codice dell'origine: '%1'%2")
            .arg(code.oldCode, code.description.isEmpty() ? QString() : " - " + code.description),
        QString("Elenco: %1.%2%3")
            .arg(code.table, code.field, list.origins.isEmpty() ? QString() : " (" + list.origins.join(", ") + ')'),
        "Va in: " + FeedsText(list), "Valore ammesso: " + KindText(list), RowsText(code)};
    return lines.join('\n');
}

} // namespace

CodeDetails::CodeDetails(Worklist& worklist, QWidget* parent)
    : QWidget(parent),
      m_worklist(worklist) {
    Lay();
}

void CodeDetails::Lay() {
    m_about = new WrappedLabel(QString());
    m_about->setObjectName("lblCode");
    m_list = new QListWidget;
    m_list->setObjectName("lstSuggestions");
    m_list->setAccessibleName("Proposte per il codice");
    m_list->setToolTip("Nell'elenco dei codici i tasti da 1 a 5 prendono la proposta di quel numero");
    connect(m_list, &QListWidget::itemActivated, this, [this] { Take(m_list->currentRow()); });
    m_target = new QComboBox;
    m_target->setObjectName("cmbTarget");
    m_target->setAccessibleName("Codice di Quadrix");
    m_target->setEditable(true);
    m_target->setInsertPolicy(QComboBox::NoInsert);
    m_target->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_target->completer()->setFilterMode(Qt::MatchContains);
    m_target->completer()->setCompletionMode(QCompleter::PopupCompletion);
    connect(m_target->lineEdit(), &QLineEdit::returnPressed, this, &CodeDetails::Use);
    m_use = lists::NewButton("cmdUse", "&Usa", {});
    connect(m_use, &QPushButton::clicked, this, &CodeDetails::Use);
    m_description = new QLineEdit;
    m_description->setObjectName("txtDescription");
    m_make = lists::NewButton("cmdMake", "C&rea", {});
    m_make->setToolTip("Crea in Quadrix il codice scritto sopra, con questa descrizione");
    connect(m_make, &QPushButton::clicked, this, &CodeDetails::Make);
    auto* suggestions = new QLabel("&Proposte:");
    suggestions->setBuddy(m_list);
    auto* target = new QHBoxLayout;
    target->addWidget(m_target, 1);
    target->addWidget(m_use);
    auto* made = new QHBoxLayout;
    made->addWidget(m_description, 1);
    made->addWidget(m_make);
    auto* form = new QFormLayout;
    auto* targetLabel = new QLabel("Codice di &Quadrix:");
    targetLabel->setBuddy(m_target);
    form->addRow(targetLabel, target);
    auto* madeLabel = new QLabel("Descri&zione del nuovo:");
    madeLabel->setBuddy(m_description);
    form->addRow(madeLabel, made);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(m_about);
    all->addWidget(suggestions);
    all->addWidget(m_list, 1);
    all->addLayout(form);
}

void CodeDetails::Show(const Code* code, const std::optional<Change>& pending) {
    m_code = code == nullptr ? std::nullopt : std::optional(*code);
    m_list->clear();
    m_suggestions.clear();
    setEnabled(code != nullptr);
    if (code == nullptr) {
        m_about->SetText("Nessun codice.");
        m_target->clear();
        m_filled.clear();
        return;
    }
    const CodeList& list = m_worklist.ListOf(*code);
    m_about->SetText(AboutText(*code, list));
    m_suggestions = Suggester(m_worklist).For(*code);
    for (size_t i = 0; i < m_suggestions.size(); ++i) {
        const Suggestion& each = m_suggestions[i];
        m_list->addItem(QString("%1   %2  %3 (%4)").arg(i + 1).arg(each.code, each.description, each.reason));
    }
    FillTargets(list, pending ? pending->newCode : code->newCode);
    const bool canMake = !list.bases.empty() && CanBeMade(list.bases.front());
    m_description->setEnabled(canMake);
    m_description->setText(code->description);
    m_make->setEnabled(canMake);
}

void CodeDetails::FillTargets(const CodeList& list, const QString& chosen) {
    const TargetCodes* targets = m_worklist.ChoicesOf(list);
    const QString table = targets == nullptr ? QString() : targets->Base().table;
    if (table != m_filled || table.isEmpty()) {
        m_target->clear();
        m_filled = table;
        for (const TargetCode& each : targets == nullptr ? std::vector<TargetCode>() : targets->All()) {
            if (m_target->count() < MostChoices) {
                m_target->addItem(each.code + " - " + each.description, each.code);
            }
        }
    }
    m_target->setCurrentIndex(m_target->findData(chosen));
    if (m_target->currentIndex() < 0) {
        m_target->setEditText(chosen);
    }
}

/// The code that is chosen in the list, or typed.
QString CodeDetails::Written() const {
    const QString text = m_target->currentText().trimmed();
    const int listed = m_target->findText(text, Qt::MatchFixedString);
    return listed >= 0 ? m_target->itemData(listed).toString() : text;
}

Change CodeDetails::ChangeTo(const QString& newCode) const {
    return {.table = m_code->table, .field = m_code->field, .oldCode = m_code->oldCode, .newCode = newCode};
}

void CodeDetails::Use() {
    if (m_code) {
        emit Chosen(ChangeTo(Written()));
    }
}

void CodeDetails::Make() {
    if (m_code) {
        Change change = ChangeTo(Written().isEmpty() ? m_code->oldCode.trimmed() : Written());
        change.isMade = true;
        change.description = m_description->text();
        emit Chosen(change);
    }
}

void CodeDetails::Take(int place) {
    if (m_code && place >= 0 && static_cast<size_t>(place) < m_suggestions.size()) {
        emit Chosen(ChangeTo(m_suggestions[static_cast<size_t>(place)].code));
    }
}
