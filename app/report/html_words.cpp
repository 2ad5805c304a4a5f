#include "app/report/html_words.h"

#include "core/italianText.h"

namespace proof::html {

QString Text(const QString& text) { return text.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")); }

QString Number(qint64 number) { return italian::NumberText(number); }

QString Amount(double amount) {
    const QString exact = QString::number(amount, 'f', 6);
    qsizetype decimals = 6;
    while (decimals > 2 && exact.at(exact.size() - 7 + decimals) == u'0') {
        --decimals;
    }
    return italian::Locale().toString(amount, 'f', static_cast<int>(decimals));
}

QString Element(const QString& tag, const QString& content, const QString& cssClass) {
    const QString attribute = cssClass.isEmpty() ? QString() : QStringLiteral(" class=\"%1\"").arg(cssClass);
    return u'<' + tag + attribute + u'>' + content + u"</" + tag + u'>';
}

QString Table(const QList<Column>& columns, const QList<Row>& rows, const QString& cssClass) {
    if (rows.isEmpty()) {
        return {};
    }
    const auto classOf = [&columns](qsizetype i) {
        return columns.value(i).isNumber ? QStringLiteral("n") : QString();
    };
    QString head;
    for (qsizetype i = 0; i < columns.size(); ++i) {
        head += Element("th", Text(columns.at(i).head), classOf(i));
    }
    QString body;
    for (const Row& row : rows) {
        QString cells;
        for (qsizetype i = 0; i < row.cells.size(); ++i) {
            cells += Element("td", row.cells.at(i), classOf(i));
        }
        body += Element("tr", cells, row.cssClass) + u'\n';
    }
    return Element("table", Element("thead", Element("tr", head)) + Element("tbody", u'\n' + body), cssClass) + u'\n';
}

} // namespace proof::html
