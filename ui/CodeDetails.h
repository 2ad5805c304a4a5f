#pragma once

#include "app/codes/changes.h"
#include "app/codes/suggestions.h"

#include <QWidget>

class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;
class WrappedLabel;

/// What there is to know about one code of a source, with the codes of Quadrix that it may be given.
class CodeDetails final : public QWidget {
    Q_OBJECT

public:
    explicit CodeDetails(codes::Worklist& worklist, QWidget* parent = nullptr);

    /// @param code null for none @param pending the change that is not saved yet; none without one
    void Show(const codes::Code* code, const std::optional<codes::Change>& pending);
    /// Gives the code the suggestion of that place, from 0; nothing when there is none.
    void Take(int place);

signals:
    /// A code is chosen for the one that is shown.
    void Chosen(const codes::Change& change);

private:
    void Lay();
    void FillTargets(const codes::CodeList& list, const QString& chosen);
    void Use();
    void Make();
    codes::Change ChangeTo(const QString& newCode) const;
    QString Written() const;

    codes::Worklist& m_worklist;
    std::optional<codes::Code> m_code;
    std::vector<codes::Suggestion> m_suggestions;
    QString m_filled; ///< the table whose codes stand in the list
    WrappedLabel* m_about = nullptr;
    QListWidget* m_list = nullptr;
    QComboBox* m_target = nullptr;
    QPushButton* m_use = nullptr;
    QLineEdit* m_description = nullptr;
    QPushButton* m_make = nullptr;
};
