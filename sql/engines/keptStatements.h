#pragma once

#include <QByteArray>
#include <QHash>

#include <memory>

/// Statements that a server has prepared, kept by their shape: an import runs few shapes with ever new values.
template<class Statement>
class KeptStatements {
public:
    /// The statement of a shape, made by `prepare` when it is new; null for a shape that `prepare` made none of, which
    /// is not asked for again, and for one whose statement is running.
    template<class Prepare>
    std::shared_ptr<Statement> Take(const QByteArray& shape, const Prepare& prepare) {
        auto known = m_kept.constFind(shape);
        if (known == m_kept.constEnd()) {
            if (m_kept.size() >= Most) {
                m_kept.clear();
            }
            known = m_kept.insert(shape, prepare());
        }
        return known->use_count() > 1 ? nullptr : *known;
    }
    /// Forgets them all; those that are running end when they are let go.
    void Clear() { m_kept.clear(); }

private:
    static constexpr qsizetype Most = 128;
    QHash<QByteArray, std::shared_ptr<Statement>> m_kept;
};
