#include "ui/AnnotationModel.h"

#include "core/italianText.h"
#include "ui/lists.h"

#include "sql/errors.h"
#include "sql/visibleText.h"

using history::Note;
using history::NoteKind;

namespace {

/// The kind that an index stands under; a kind itself stands under none.
std::optional<size_t> KindOver(const QModelIndex& index) {
    return index.internalId() == 0 ? std::nullopt : std::optional(static_cast<size_t>(index.internalId() - 1));
}

Qt::CheckState StateOf(const NoteKind& kind) {
    return kind.done == 0 ? Qt::Unchecked : kind.done < kind.count ? Qt::PartiallyChecked : Qt::Checked;
}

} // namespace

AnnotationModel::AnnotationModel(const history::History& history, qint64 run, QObject* parent)
    : QAbstractItemModel(parent),
      m_history(history),
      m_run(run),
      m_notes(history, run) {}

/// Nothing may be raised into the view that asks.
template<class Result, class Work>
Result AnnotationModel::Try(Result otherwise, const Work& work, bool tells) const {
    try {
        return work();
    } catch (const std::exception& error) {
        if (tells) {
            emit Failed(MessageOf(error));
        }
        return otherwise;
    }
}

void AnnotationModel::Want(const history::WantedNotes& wanted) {
    beginResetModel();
    m_hasTold = false;
    Try(false, [&] {
        m_notes = history::Annotations(m_history, m_run, wanted);
        return true;
    });
    endResetModel();
}

std::optional<Note> AnnotationModel::Read(const QModelIndex& index, bool tells) const {
    const auto kind = index.isValid() ? KindOver(index) : std::nullopt;
    return kind ? Try(
                      std::optional<Note>(), [&] { return std::optional(m_notes.At(*kind, index.row())); }, tells)
                : std::nullopt;
}

std::optional<Note> AnnotationModel::NoteAt(const QModelIndex& index) const { return Read(index, true); }

QString AnnotationModel::KindAt(const QModelIndex& index) const {
    return index.isValid() ? m_notes.Kinds().at(KindOver(index).value_or(static_cast<size_t>(index.row()))).kind
                           : QString();
}

std::optional<QString> AnnotationModel::LineAt(const QModelIndex& index) const {
    if (KindOver(index)) {
        const auto note = NoteAt(index);
        return note ? std::optional(QStringList{note->kind, note->procedure, note->row, note->text}.join(u'\t'))
                    : std::nullopt;
    }
    const NoteKind& kind = m_notes.Kinds().at(static_cast<size_t>(index.row()));
    return kind.kind + u'\t' + QString::number(kind.count);
}

QModelIndex AnnotationModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || row >= rowCount(parent) || column < 0 || column >= ColumnCount) {
        return {};
    }
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr(0));
}

QModelIndex AnnotationModel::parent(const QModelIndex& index) const {
    const auto kind = index.isValid() ? KindOver(index) : std::nullopt;
    return kind ? createIndex(static_cast<int>(*kind), 0, quintptr(0)) : QModelIndex();
}

int AnnotationModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) {
        return static_cast<int>(m_notes.Kinds().size());
    }
    const bool isKind = parent.column() == 0 && !KindOver(parent);
    return isKind ? static_cast<int>(m_notes.Kinds().at(static_cast<size_t>(parent.row())).count) : 0;
}

int AnnotationModel::columnCount(const QModelIndex& /*parent*/) const { return ColumnCount; }

QVariant AnnotationModel::KindData(const QModelIndex& index, int role) const {
    const NoteKind& kind = m_notes.Kinds().at(static_cast<size_t>(index.row()));
    if (index.column() != RowColumn) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return QStringLiteral("%1: %2, di cui fatte %3")
            .arg(VisibleLine(kind.kind), italian::NumberText(kind.count), italian::NumberText(kind.done));
    case Qt::CheckStateRole:
        return StateOf(kind);
    default:
        return {};
    }
}

QVariant AnnotationModel::NoteData(const Note& note, int column, int role) const {
    if (role == Qt::CheckStateRole && column == RowColumn) {
        return note.isDone ? Qt::Checked : Qt::Unchecked;
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) {
        return {};
    }
    switch (column) {
    case RowColumn:
        return note.row.isEmpty() ? QStringLiteral("(tutta l'esecuzione)") : VisibleLine(note.row);
    case TextColumn:
        return VisibleLine(note.text);
    default:
        return note.procedure;
    }
}

QVariant AnnotationModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::CheckStateRole && role != Qt::ToolTipRole)) {
        return {};
    }
    if (!KindOver(index)) {
        return KindData(index, role);
    }
    const auto note = Read(index, !m_hasTold);
    m_hasTold = m_hasTold || !note;
    return note ? NoteData(*note, index.column(), role) : QVariant();
}

bool AnnotationModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::CheckStateRole) {
        return false;
    }
    const bool isDone = value.toInt() == Qt::Checked;
    const auto over = KindOver(index);
    const auto kind = over.value_or(static_cast<size_t>(index.row()));
    const bool isSet = Try(false, [&] {
        if (over) {
            m_notes.SetDone(kind, index.row(), isDone);
        } else {
            m_notes.SetKindDone(kind, isDone);
        }
        return true;
    });
    const QModelIndex changed = this->index(static_cast<int>(kind), 0);
    emit dataChanged(changed, changed);
    emit dataChanged(this->index(0, 0, changed), this->index(rowCount(changed) - 1, ColumnCount - 1, changed));
    return isSet;
}

QVariant AnnotationModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QStringList headings{"Riga dell'origine", "Annotazione", "Procedura"};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? headings.value(section) : QVariant();
}

Qt::ItemFlags AnnotationModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    flags.setFlag(Qt::ItemIsUserCheckable, index.column() == RowColumn);
    flags.setFlag(Qt::ItemNeverHasChildren, index.isValid() && KindOver(index).has_value());
    return flags;
}
