#include "app/report/chart.h"

#include "app/report/html_words.h"

#include <algorithm>

namespace proof {

namespace {

constexpr double LabelWidth = 170;
constexpr double BarWidth = 440;
constexpr double Width = 720;
constexpr double RowHeight = 26;
constexpr double BarHeight = 16;
constexpr double LegendHeight = 26;
constexpr double LeastWidth = 1.5; ///< of a part that is there, however small: one row in a million must be seen

QString At(double number) { return QString::number(number, 'f', 1); }

double SumOf(const Bar& bar) {
    double sum = 0;
    for (const Bar::Part& part : bar.parts) {
        sum += part.value;
    }
    return sum;
}

QString Rectangle(double x, double y, double width, const Bar::Part& part) {
    return QStringLiteral("<rect class=\"%1\" x=\"%2\" y=\"%3\" width=\"%4\" height=\"%5\"><title>%6</title></rect>")
        .arg(part.cssClass, At(x), At(y), At(width), At(BarHeight), html::Text(part.name));
}

QString Label(double x, double y, const QString& text, const char* anchor = "start") {
    return QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"%3\">%4</text>")
        .arg(At(x), At(y), QLatin1String(anchor), html::Text(text));
}

QString DrawnBar(const Bar& bar, double y, double scale) {
    QString svg = Label(LabelWidth - 8, y + BarHeight - 4, bar.label, "end");
    double x = LabelWidth;
    for (const Bar::Part& part : bar.parts) {
        if (part.value > 0) {
            const double width = std::max(part.value * scale, LeastWidth);
            svg += Rectangle(x, y, width, part);
            x += width;
        }
    }
    return svg + Label(x + 6, y + BarHeight - 4, bar.figure) + u'\n';
}

QString Legend(const QVector<Bar>& bars, double y) {
    QString svg;
    double x = LabelWidth;
    QStringList told;
    for (const Bar& bar : bars) {
        for (const Bar::Part& part : bar.parts) {
            if (part.value > 0 && !told.contains(part.name)) {
                constexpr double size = 10;
                constexpr double character = 6.6;
                svg += QStringLiteral("<rect class=\"%1\" x=\"%2\" y=\"%3\" width=\"%4\" height=\"%4\"/>")
                           .arg(part.cssClass, At(x), At(y), At(size));
                svg += Label(x + size + 5, y + size - 1, part.name);
                x += size + 24 + character * static_cast<double>(part.name.size());
                told.append(part.name);
            }
        }
    }
    return svg;
}

} // namespace

QString Chart(const QVector<Bar>& bars, const QString& title) {
    double most = 0;
    for (const Bar& bar : bars) {
        most = std::max(most, SumOf(bar));
    }
    if (most <= 0) {
        return {};
    }
    const double height = LegendHeight + RowHeight * static_cast<double>(bars.size());
    QString svg = QStringLiteral("<svg class=\"chart\" role=\"img\" viewBox=\"0 0 %1 %2\" "
                                 "xmlns=\"http://www.w3.org/2000/svg\"><title>%3</title>\n")
                      .arg(At(Width), At(height), html::Text(title));
    svg += Legend(bars, 4) + u'\n';
    double y = LegendHeight;
    for (const Bar& bar : bars) {
        svg += DrawnBar(bar, y, BarWidth / most);
        y += RowHeight;
    }
    return svg + u"</svg>\n";
}

} // namespace proof
