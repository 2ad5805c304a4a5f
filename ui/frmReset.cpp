#include "ui/frmReset.h"

#include "core/italianText.h"
#include "ui/choiceDialog.h"
#include "ui/WrappedLabel.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

using R = ResetOptions;

const ResetChoice& ChoiceOf(ResetOption option) {
    const auto& choices = ResetChoices();
    return *std::find_if(choices.begin(), choices.end(), [&](const ResetChoice& c) { return c.option == option; });
}

/// "Svuota ORD_FAS, ORD_COM, ..."
QString TablesHint(ResetOption option) {
    QStringList tables;
    for (const ResetGroup& group : ResetGroups()) {
        if (group.option == option) {
            tables += group.tables;
        }
    }
    return tables.isEmpty() ? QStringLiteral("Da solo non svuota alcuna tabella")
                            : QString("Svuota " + tables.join(", "));
}

/// "1.200 righe"
QString RowsText(qint64 rows) { return italian::NumberText(rows) + (rows == 1 ? " riga" : " righe"); }

/// What an option would delete, behind its caption; empty for one that is not counted.
QString RowsBehind(const ResetRows& rows, ResetOption option) {
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const auto& each) { return each.first == option; });
    return found == rows.end() ? QString() : QString(" - " + RowsText(found->second));
}

/// The caption of an option with its mnemonic.
QString CaptionOf(ResetOption option) {
    static const QStringList captions = [] {
        QStringList all;
        for (const ResetChoice& choice : ResetChoices()) {
            all.append(choice.caption);
        }
        return choiceDialog::WithMnemonics(all);
    }();
    const auto index = std::distance(ResetChoices().data(), &ChoiceOf(option));
    return captions.at(index);
}

} // namespace

frmReset::frmReset(Operator& person, QString company, ResetRows rows, Besides besides, QWidget* parent)
    : QDialog(parent),
      m_person(person),
      m_company(std::move(company)),
      m_rows(std::move(rows)),
      m_besides(std::move(besides)) {
    setObjectName("frmReset");
    setWindowTitle("Reset Database");
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    Lay();
}

void frmReset::Lay() {
    auto* title = new WrappedLabel("Dati da eliminare dall'azienda " + m_company + ":");
    title->setObjectName("lblCompany");
    auto* left = new QVBoxLayout;
    AddGroup(*left, "Anagrafiche", {&R::AnaArt, &R::AnaCon});
    AddGroup(*left, "Documenti", {&R::DocVen, &R::DocAcq});
    AddGroup(*left, "Magazzino", {&R::Maga, &R::MagaLam});
    left->addStretch();
    auto* right = new QVBoxLayout;
    AddGroup(*right, "Produzione", {&R::DisBas, &R::PrevProd, &R::OrdProd, &R::Rilevamenti});
    AddGroup(*right, "Sistema", {&R::SystemTable});
    right->addStretch();
    auto* columns = new QHBoxLayout;
    columns->addLayout(left);
    columns->addLayout(right);
    auto* all = new QVBoxLayout(this);
    all->addWidget(title);
    all->addLayout(columns, 1);
    auto* stays = new WrappedLabel("Con gli articoli e le controparti vanno le righe che le importazioni vi hanno "
                                   "appeso (fornitori, attributi, telefoni, indirizzi web, ...), e i testi in lingua "
                                   "degli articoli; quelle inserite a mano restano, e passano a chi avrà quel codice.");
    stays->setObjectName("lblStays");
    all->addWidget(stays);
    const choiceDialog::Buttons buttons = choiceDialog::NewButtons();
    connect(buttons.ok, &QPushButton::clicked, this, &frmReset::cmdOk_Click);
    connect(buttons.cancel, &QPushButton::clicked, this, &QDialog::reject);
    all->addLayout(buttons.row);
}

void frmReset::AddGroup(QVBoxLayout& column, const QString& title, const std::vector<ResetOption>& options) {
    auto* group = new QGroupBox(title);
    auto* lines = new QVBoxLayout(group);
    for (const ResetOption option : options) {
        lines->addWidget(NewBox(ChoiceOf(option)));
    }
    column.addWidget(group);
}

QCheckBox* frmReset::NewBox(const ResetChoice& choice) {
    auto* box = new QCheckBox(CaptionOf(choice.option) + RowsBehind(m_rows, choice.option));
    box->setObjectName(QStringLiteral("chk") + QLatin1String(choice.name));
    box->setToolTip(TablesHint(choice.option));
    box->setAccessibleDescription(box->toolTip());
    connect(box, &QCheckBox::clicked, this, [this, option = choice.option](bool ticked) { Clicked(option, ticked); });
    m_boxes.emplace_back(choice.option, box);
    return box;
}

void frmReset::Clicked(ResetOption option, bool ticked) {
    m_options.*option = ticked;
    m_options = AfterClick(m_options, option);
    ShowOptions();
}

void frmReset::ShowOptions() {
    for (const auto& [option, box] : m_boxes) {
        box->setChecked(m_options.*option);
    }
}

bool frmReset::SelectOptions() { return exec() == Accepted; }

/// Company and number of rows that the boxes ticked delete; those of tables that cannot be counted come on top.
QString frmReset::WhatGoes() const {
    qint64 rows = 0;
    for (const auto& [option, count] : m_rows) {
        rows += m_options.*option ? count : 0;
    }
    const bool atLeast = std::any_of(ResetGroups().begin(), ResetGroups().end(), [this](const ResetGroup& group) {
        return m_options.*group.option && RowsBehind(m_rows, group.option).isEmpty();
    });
    const QStringList lines{"Azienda " + m_company + ": " + (atLeast ? "almeno " : "") + RowsText(rows)};
    return (lines + (m_besides ? m_besides(m_options) : QStringList())).join(u'\n');
}

void frmReset::cmdOk_Click() {
    if (ConfirmReset(m_person, m_options, WhatGoes())) {
        accept();
    }
}
