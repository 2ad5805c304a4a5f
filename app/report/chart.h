#pragma once

#include <QString>
#include <QVector>

namespace proof {

/// A bar of a chart: parts of a number, one behind the other.
struct Bar {
    struct Part {
        QString name; ///< "trovate"
        double value = 0;
        QString cssClass; ///< that colours it
    };
    QString label;
    QVector<Part> parts;
    QString figure; ///< written behind the bar
};

/// Bars below each other on one scale, as an SVG picture with a legend; empty when there is nothing to show.
QString Chart(const QVector<Bar>& bars, const QString& title);

} // namespace proof
