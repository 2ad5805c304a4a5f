#include "app/report/sums.h"

#include <QHash>

namespace proof {

namespace {

QHash<QString, Summed> All() {
    QHash<QString, Summed> all;
    const auto add = [&all](const Summed& summed) { all.insert(summed.table, summed); };
    for (const char* heads : {"DOC_VEN", "DOC_ACQ", "DOC_CTL", "DOC_ICO"}) {
        add({heads, {"DTIMP", "DTIVA", "DTTOT"}, {"DTCAU", "DTANN"}});
    }
    for (const char* rows : {"DOC_VER", "DOC_ACR", "DOC_CTR", "DOC_ICR"}) {
        add({rows, {"DRQTR", "DRTOT"}});
    }
    add({"MOV_MAR", {"MRQTA", "MRVAL"}, {"MRMAG"}});
    add({"LIS_ARS", {"SCPRZ"}});
    add({"LIS_LAS", {"SCCOS"}});
    add({"DIS_COM", {"DCQTA"}});
    add({"ART_ICO", {"ARCOS", "ARPRZ"}});
    add({"ART_FOR", {"ARPRZ"}});
    add({"CON_TRO", {"COFID"}});
    return all;
}

} // namespace

const Summed* SummedOf(const QString& table) {
    static const QHash<QString, Summed> all = All();
    const auto found = all.constFind(table);
    return found == all.cend() ? nullptr : &*found;
}

} // namespace proof
