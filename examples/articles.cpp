#include "examples/articles.h"

#include <QStringList>

namespace examples {

QString ArticleCode(qint64 number) {
    constexpr int letters = 26;
    const auto letter = [](qint64 value) { return QChar(static_cast<ushort>(u'A' + value % letters)); };
    return letter(number / letters) + QString(letter(number)) +
           QStringLiteral("%1").arg(number, 6, 10, QLatin1Char('0'));
}

QString ArticleName(Random& random) {
    static const QStringList things{
        "Vite",        "Dado",    "Rondella", "Flangia", "Albero",           "Staffa",        "Piastra",  "Cuscinetto",
        "Guarnizione", "Molla",   "Boccola",  "Perno",   "Telaio",           "Coperchio",     "Supporto", "Ingranaggio",
        "Puleggia",    "Valvola", "Raccordo", "Tubo",    "Quadro elettrico", "Motoriduttore", "Cilindro", "Profilato"};
    static const QStringList materials{"acciaio inox", "acciaio zincato", "alluminio", "ottone", "ghisa",
                                       "nylon",        "gomma",           "lamiera",   "rame",   "qualità A"};
    const QString size = random.Chance(50)
                             ? QStringLiteral("Ø %1").arg(random.Between(2, 120))
                             : QStringLiteral("M%1x%2").arg(random.Between(2, 30)).arg(random.Between(5, 200));
    return random.Pick(things) + u' ' + random.Pick(materials) + u' ' + size;
}

} // namespace examples
