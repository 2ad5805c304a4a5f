#pragma once

#include "app/history/Annotations.h"

#include <QAbstractItemModel>

/// The notes of a run as a tree: its kinds, under each its notes, which are read as they come into sight. A tick stands
/// for what has been dealt with, of a note or of all of a kind.
class AnnotationModel final : public QAbstractItemModel {
    Q_OBJECT

public:
    enum Column { RowColumn, TextColumn, ProcedureColumn, ColumnCount };

    /// @param history must outlive it
    AnnotationModel(const history::History& history, qint64 run, QObject* parent);

    /// Shows those that are wanted.
    void Want(const history::WantedNotes& wanted);
    const history::Annotations& Shown() const { return m_notes; }
    /// The note at a place; none for a kind, and none when it cannot be read.
    std::optional<history::Note> NoteAt(const QModelIndex& index) const;
    /// Name of the kind at a place, or of the note there.
    QString KindAt(const QModelIndex& index) const;
    /// A line for the clipboard: kind, procedure, row and text, separated by tabs; of a kind its name and number. None
    /// when it cannot be read.
    std::optional<QString> LineAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    /// The history cannot be read or written.
    void Failed(const QString& message) const;

private:
    template<class Result, class Work>
    Result Try(Result otherwise, const Work& work, bool tells = true) const;
    std::optional<history::Note> Read(const QModelIndex& index, bool tells) const;
    QVariant KindData(const QModelIndex& index, int role) const;
    QVariant NoteData(const history::Note& note, int column, int role) const;

    const history::History& m_history;
    qint64 m_run;
    mutable history::Annotations m_notes;
    mutable bool m_hasTold = false; ///< a view asks for what cannot be read at every painting
};
