#pragma once

#include "app/reset.h"

#include <QDialog>

class QCheckBox;
class QVBoxLayout;

/// The dialog in which the operator chooses what a reset empties.
class frmReset final : public QDialog {
    Q_OBJECT

public:
    using Besides = std::function<QStringList(const ResetOptions& options)>;

    /// @param company code and name of the company that is emptied, shown for safety
    /// @param rows what each option would delete, shown beside it
    /// @param besides what else goes or stays with the options chosen, told before
    frmReset(Operator& person, QString company, ResetRows rows, Besides besides, QWidget* parent);

    /// Shows the dialog and returns whether the operator confirmed; `Options` are what he chose then.
    bool SelectOptions();
    /// The options as the check boxes show them.
    const ResetOptions& Options() const { return m_options; }

public slots:
    /// Closes the dialog when something is chosen and the operator confirms.
    void cmdOk_Click();

private:
    void Lay();
    void AddGroup(QVBoxLayout& column, const QString& title, const std::vector<ResetOption>& options);
    QCheckBox* NewBox(const ResetChoice& choice);
    void Clicked(ResetOption option, bool ticked);
    void ShowOptions();
    QString WhatGoes() const;

    Operator& m_person;
    QString m_company;
    ResetRows m_rows;
    Besides m_besides;
    ResetOptions m_options;
    std::vector<std::pair<ResetOption, QCheckBox*>> m_boxes;
};
