#pragma once

#include "app/history/History.h"

#include <QAbstractItemModel>
#include <QDialog>
#include <QTimer>

class AnnotationModel;
class QComboBox;
class QLabel;
class QLineEdit;
class QTableWidget;
class QTreeView;
class WindowOperator;

/// What a run did: its procedures, and below them what it told of its rows, to be looked through and ticked off.
class frmResult final : public QDialog {
    Q_OBJECT

public:
    /// @param run of the history beside the settings. Raises `SqlError` or `ImportError` when it is not there.
    frmResult(Session& session, WindowOperator& person, qint64 run, QWidget* parent);
    ~frmResult() override;

    qint64 Run() const { return m_run.id; }

public slots:
    /// Shows the notes that the kind, the text searched and the order ask for.
    void Fill();
    /// Ticks the chosen notes off, or takes their ticks away when all of them have one.
    void cmdDone_Click();
    /// Shows the row of the current note beside what it became; opens and closes a kind.
    void OpenRow(const QModelIndex& index);
    void Copy();
    /// Writes the notes that are shown into a file that is asked for.
    void cmdExport_Click();

private:
    void Lay();
    QWidget* NewProcedures();
    QWidget* NewFilter();
    QWidget* NewNotes();
    QLayout* NewButtons();
    void FillKinds();
    void ShowCount();
    void Expand(const QSet<QString>& kinds);
    QModelIndexList Selected() const;
    void Tell(const QString& trouble);

    Session& m_session;
    WindowOperator& m_person;
    history::History m_history;
    history::Run m_run;
    AnnotationModel* m_model;
    QComboBox* m_kind = nullptr;
    QLineEdit* m_text = nullptr;
    QComboBox* m_order = nullptr;
    QLabel* m_count = nullptr;
    QTreeView* m_notes = nullptr;
    QTimer m_typing; ///< a search waits for the end of a word
};
