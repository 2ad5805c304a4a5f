// Lantek 24: the CAM database of the workshop, with what it orders and makes.

#include "examples/lantek.h"

namespace examples {

namespace lantek24 {

namespace {

using namespace lantek;

constexpr qint64 OrderLines = 3;
constexpr qint64 Operations = 2;
const Count PurchaseOrders = EachOf(5);
const Count WorkOrders = EachOf(4);
/// Day that stands for none.
const QDateTime NoDay(QDate(1900, 1, 1), QTime(0, 0), Qt::UTC);

const Rule CompanyCode = BySide(Code("C", 6), Code("F", 6));

/// What is different for the products of each kind.
Rule ByKind(const Rule& sheet, const Rule& remnant, const Rule& bought, const Rule& part, const Rule& assembly) {
    return Kinds({{Exactly(Sheets), sheet},
                  {Exactly(Remnants), remnant},
                  {Bought, bought},
                  {Parts, part},
                  {Assemblies, assembly}});
}

Rule Same(const Rule& sheetOrRemnant, const Rule& rest) {
    return ByKind(sheetOrRemnant, sheetOrRemnant, rest, rest, rest);
}

Rule No() { return Fixed(0); }
Rule Blank() { return Fixed(QString()); }

Table CompaniesTable() {
    const Address address("CCOO");
    return {"CCOO_CCOO_00000100",
            "controparti",
            Counterparties,
            {{{"ComRef", 'C', 20}, CompanyCode},
             {{"IsCust", 'L'}, BySide(Fixed(true), Fixed(false))},
             {{"IsSupp", 'L'}, BySide(Fixed(false), Fixed(true))},
             {{"ComName", 'C', 80}, CompanyName(80)},
             {{"Address1", 'C', 60}, address.Street()},
             {{"Address2", 'C', 60}, Blank()},
             {{"ZipCode", 'C', 10}, address.PostCode()},
             {{"City", 'C', 40}, address.Town()},
             {{"State", 'C', 10}, address.Province()},
             {{"Zone", 'C', 10}, Blank()},
             {{"Country", 'C', 20}, Blank()},
             {{"VATNum", 'C', 20}, VatNumber()},
             {{"Phone", 'C', 30}, address.Telephone()},
             {{"Fax", 'C', 30}, Blank()},
             {{"EMail", 'C', 60}, OnInternet("info@")},
             {{"Web", 'C', 60}, Blank()},
             {{"CurName", 'C', 10}, Fixed("EUR")},
             {{"LanName", 'C', 10}, Blank()},
             {{"Descrip", 'M'}, Chance(10, Fixed("Chiamare prima"), Blank())}},
            {{{"ComRef", "NESSUNO"}, {"IsCust", false}, {"IsSupp", false}},
             {{"ComRef", "C999998"}, {"State", "TRENTO"}, {"VATNum", ""}, {"IsCust", true}}},
            {{"ComRef"}}};
}

QVector<Table> CompanyTables() {
    const auto terms = [](const char* name, const char* key, const Count& rows, const QString& prefix) {
        return Table{QLatin1String(name),
                     "controparti",
                     rows,
                     {{{key, 'C', 20}, Code(prefix, 6)},
                      {{"PymName", 'C', 20}, OneOf({"RB 30", "RB 60", ""})},
                      {{"BnkDsc", 'C', 40}, Blank()},
                      {{"BnkAcc", 'C', 30}, Blank()},
                      {{"SwCode", 'C', 11}, Blank()},
                      {{"Iban", 'C', 40}, Chance(50, Iban(), Blank())}},
                     {},
                     {{key}}};
    };
    return {CompaniesTable(),
            {"CCOO_CCOO_00000200",
             "controparti",
             Counterparties,
             {{{"ComRef", 'C', 20}, CompanyCode},
              {{"EName", 'C', 40}, FirstName()},
              {{"ESurname1", 'C', 40}, LastName()},
              {{"Title", 'C', 30}, OneOf({"Acquisti", "Vendite", ""})},
              {{"WPhone", 'C', 30}, Address("CCOO").Telephone()},
              {{"WEMail", 'C', 60}, OnInternet("ufficio@")}},
             {},
             {{"ComRef"}}},
            terms("SSAA_CCUU_00000100", "CusRef", Customers, "C"),
            terms("SSHH_SSPP_00000100", "SuppRef", Suppliers, "F")};
}

Table ProductsTable() {
    QVector<Field> fields{
        {{"RecID", 'I'}, [](const Place& place) { return QVariant(place.row + 1); }},
        {{"PrdRef", 'C', 60}, ByKind(SheetCode(), RemnantCode(), BoughtCode(), PartCode(), AssemblyCode())},
        {{"PrdName", 'C', 120}, ArticleText()},
        {{"IsActive", 'L'}, Fixed(true)},
        {{"Assembly", 'L'}, ByKind(No(), No(), No(), No(), Fixed(1))},
        {{"PGroup", 'C', 20}, ByKind(Blank(), Blank(), Blank(), Fixed("MECC"), Fixed("MECC"))},
        {{"CGroup", 'C', 20}, Blank()},
        {{"StdCost", 'N', 12, 4}, Number(0.5, 90, 2)},
        {{"CurCost", 'N', 12, 4}, Chance(60, Number(0.5, 90, 2), No())},
        {{"UntName", 'C', 10}, Same(Fixed("kg"), Fixed("unt"))},
        {{"CDate", 'T'}, Chance(80, Day(300), Fixed(NoDay))},
        {{"Descrip", 'M'}, Chance(10, Fixed("Spigoli vivi: maneggiare con i guanti"), Blank())},
        {{"Image", 'C', 60}, Blank()},
        {{"Weight", 'N', 12, 3}, Number(0.1, 40, 3)},
        {{"LeadTime", 'N', 4}, Whole(0, 20)},
        {{"DIS_MatRef", 'C', 20}, ByKind(SheetMaterial(), SheetMaterial(), Blank(), SheetMaterial(), Blank())},
        {{"DIS_Length", 'N', 8, 1}, ByKind(SheetLength(), Fixed(800), No(), No(), No())},
        {{"DIS_Width", 'N', 8, 1}, ByKind(SheetWidth(), Fixed(600), No(), No(), No())},
        {{"DIS_Thickness", 'N', 6, 2}, ByKind(SheetThickness(), SheetThickness(), No(), SheetThickness(), No())},
        {{"DIS_ExtWeight", 'N', 12, 3}, No()},
        {{"DIS_IsRemnant", 'L'}, ByKind(No(), Fixed(1), No(), No(), No())},
        {{"DIS_ScrpPrice", 'N', 10, 2}, ByKind(No(), Number(1, 9, 2), No(), No(), No())},
        {{"DIS_CamQuan", 'N', 10, 2}, Same(Whole(1, 9), No())},
        {{"DIS_InProgress", 'N', 10, 2}, Same(Chance(20, Fixed(1), No()), No())},
        {{"DIS_ShtRefOrg", 'C', 60}, ByKind(Blank(), SheetCode(), Blank(), Blank(), Blank())},
        {{"DIS_Price", 'N', 10, 2}, Number(1, 150, 2)},
        {{"DIS_PClass", 'N', 3}, ByKind(Fixed(51), Fixed(51), No(), Fixed(50), Fixed(50))}};
    for (int number = 1; number <= 8; ++number) {
        const QByteArray name = "DIS_UData" + QByteArray::number(number) + "_Prt";
        fields.append({{name, 'C', 60}, number == 1 ? Chance(10, Fixed("Verniciata"), Blank()) : Blank()});
    }
    return {"PPRR_PPRR_00000100", "articoli", Products, fields, {{{"PrdRef", "PESO-MANCA"}, {"Weight", "leggero"}}},
            {{"PrdRef"}}};
}

Table OperationsTable() {
    return {
        "MMNN_PPOO_00000200",
        "distinte",
        Sum(Times(Operations, Parts), Assemblies),
        {{{"RecID", 'I'}, [](const Place& place) { return QVariant(place.row + 1); }},
         {{"PrdRef", 'C', 60},
          Kinds({{Times(Operations, Parts), OfParent(Operations, PartCode())}, {Assemblies, AssemblyCode()}})},
         {{"OOrder", 'I'}, Kinds({{Times(Operations, Parts), Line(Operations)}, {Assemblies, Fixed(1)}})},
         {{"WrkRef", 'C', 20}, Fixed("LASER1")},
         {{"OprRef", 'C', 20},
          Kinds({{Times(Operations, Parts), Turn(1, {Fixed("TAGL"), Fixed("PIEGA")})}, {Assemblies, Fixed("SALD")}})},
         {{"StdTime", 'N', 8, 2}, Number(0.5, 15, 1)}},
        {},
        {{"PrdRef"}}};
}

/// Each part is cut from a sheet; an assembly holds two parts and something bought.
Table CostsTable() {
    constexpr qint64 components = 3;
    const Count ofAssemblies = Times(components, Assemblies);
    const Rule child = Turn(1, {AnyOf(Parts, PartCode()), AnyOf(Parts, PartCode()), AnyOf(Bought, BoughtCode())});
    return {"MMNN_PPOO_00000300",
            "distinte",
            Sum(Parts, Times(components, Assemblies)),
            {{{"PrdRef", 'C', 60}, Kinds({{Parts, PartCode()}, {ofAssemblies, OfParent(components, AssemblyCode())}})},
             {{"CType", 'I'}, Fixed(100)},
             {{"CPrdRef", 'C', 60}, Kinds({{Parts, Blank()}, {ofAssemblies, child}})},
             {{"StdQuan", 'N', 10, 3}, Kinds({{Parts, Number(0.1, 12, 3)}, {ofAssemblies, Whole(1, 8)}})},
             {{"UntName", 'C', 10}, Kinds({{Parts, Fixed("kg")}, {ofAssemblies, Fixed("unt")}})},
             {{"StdCostU", 'N', 10, 2}, Number(1, 9, 2)},
             {{"StdCostT", 'N', 10, 2}, Number(1, 90, 2)}},
            {{{"PrdRef", "ASS-0001"}, {"CPrdRef", "NON-CE"}}},
            {{"PrdRef"}}};
}

QVector<Table> PurchaseTables() {
    const Amounts amounts("SSHH_PPOO", OrderLines);
    const Table heads{"SSHH_PPOO_00000100",
                      "documenti",
                      PurchaseOrders,
                      {{{"OrdRef", 'C', 20}, Code("PO-", 5)},
                       {{"CDate", 'T'}, Day(360)},
                       {{"DDate", 'T'}, Chance(50, Day(360), Fixed(NoDay))},
                       {{"SuppRef", 'C', 20}, AnyOf(Suppliers, Code("F", 6))},
                       {{"SuppName", 'C', 60}, Blank()},
                       {{"PymName", 'C', 20}, OneOf({"RB 30", ""})},
                       {{"CurName", 'C', 10}, Fixed("EUR")},
                       {{"DDisc", 'N', 6, 2}, No()},
                       {{"Descrip", 'M'}, Chance(20, Fixed("Urgente"), Blank())},
                       {{"Subtotal", 'N', 14, 2}, amounts.Net()},
                       {{"TValue", 'N', 14, 2}, amounts.Vat()},
                       {{"TotalA", 'N', 14, 2}, amounts.Gross()},
                       {{"RQPrice", 'L'}, Fixed(false)}},
                      {{{"OrdRef", "PO-90001"}, {"SuppRef", "F999999"}, {"TotalA", 0}},
                       {{"OrdRef", "BOZZA"}, {"TotalA", 0}},
                       {{"OrdRef", "PO-90003"}, {"RQPrice", true}}},
                      {{"OrdRef"}}};
    const Rule product = Turn(1, {AnyOf(Exactly(Sheets), SheetCode()), AnyOf(Bought, BoughtCode())});
    return {heads,
            {"SSHH_PPOO_00000200",
             "documenti",
             Times(OrderLines, PurchaseOrders),
             {{{"OrdRef", 'C', 20}, OfParent(OrderLines, Code("PO-", 5))},
              {{"LineNum", 'I'}, Line(OrderLines)},
              {{"PrdRef", 'C', 60}, product},
              {{"PrdName", 'C', 80}, ArticleText()},
              {{"Descrip", 'M'}, Chance(10, Fixed("Con certificato 3.1"), Blank())},
              {{"Quantity", 'N', 12, 3}, amounts.Quantity()},
              {{"QUANUntName", 'C', 10}, Fixed("unt")},
              {{"TotalUnits", 'N', 12, 3}, No()},
              {{"UntName", 'C', 10}, Fixed("unt")},
              {{"UPrice", 'N', 12, 4}, amounts.Price()},
              {{"Disc", 'N', 6, 2}, No()},
              {{"TPrice", 'N', 14, 2}, amounts.RowTotal()},
              {{"TaxRef", 'C', 5}, Fixed("22")},
              {{"RcvdQuantity", 'N', 12, 3}, No()},
              {{"DlvStatus", 'I'}, Fixed(10)},
              {{"SPrdRef", 'C', 40}, Blank()}},
             {},
             {{"OrdRef"}}}};
}

QVector<Table> WorkOrderTables() {
    const Rule order = Code("MO-", 5);
    return {{"MMNN_MMOO_00000100",
             "produzione",
             WorkOrders,
             {{{"MnORef", 'C', 20}, order},
              {{"MnORoot", 'C', 20}, order},
              {{"PrdRef", 'C', 60}, Turn(1, {AnyOf(Assemblies, AssemblyCode()), AnyOf(Parts, PartCode())})},
              {{"OrdRef", 'C', 20}, Blank()},
              {{"OLineNum", 'I'}, No()},
              {{"DIS_IsQuote", 'L'}, Fixed(false)}},
             {{{"PrdRef", "NON-CE"}}, {{"DIS_IsQuote", true}}},
             {{"MnORef"}}},
            {"MMNN_MMOO_00000300",
             "produzione",
             Times(Operations, WorkOrders),
             {{{"MnORef", 'C', 20}, OfParent(Operations, order)},
              {{"OOrder", 'I'}, Line(Operations)},
              {{"WrkRef", 'C', 20}, Fixed("LASER1")},
              {{"OprRef", 'C', 20}, Turn(1, {Fixed("TAGL"), Fixed("PIEGA")})},
              {{"Quantity", 'N', 10, 2}, OfParent(Operations, Whole(1, 50))},
              {{"MQ", 'N', 10, 2}, No()},
              {{"MState", 'I'}, No()},
              {{"CDate", 'T'}, OfParent(Operations, Day(300))},
              {{"RDate", 'T'}, OfParent(Operations, Day(300))},
              {{"EDate", 'T'}, OfParent(Operations, Chance(40, Day(300), Fixed(NoDay)))},
              {{"EDuration", 'N', 8, 2}, No()},
              {{"StdTime", 'N', 8, 2}, Number(1, 9, 1)},
              {{"IsOutsourcing", 'L'}, Fixed(false)},
              {{"SuppRef", 'C', 20}, Blank()}},
             {},
             {{"MnORef"}}}};
}

QVector<Table> StockTables() {
    return {{"DIS_MMTT_MMTT_00000100",
             "articoli",
             Exactly(Materials),
             {{{"MatRef", 'C', 20}, MaterialCode()},
              {{"Density", 'N', 8, 3}, Density()},
              {{"Price", 'N', 8, 2}, Number(0.8, 4, 2)},
              {{"Descrip", 'M'}, Blank()}}},
            {"WWHH_IIVV_00000100",
             "magazzino",
             Exactly(Sheets),
             {{{"WrhRef", 'C', 10}, Fixed("W1")},
              {{"PrdRef", 'C', 60}, SheetCode()},
              {{"StockQ", 'N', 10, 2}, Whole(1, 60)},
              {{"LocDefault", 'C', 20}, Code("A-", 2)},
              {{"MinStock", 'N', 10, 2}, Whole(0, 5)},
              {{"MinOrder", 'N', 10, 2}, Whole(0, 10)}},
             {{{"PrdRef", "S235-2-3000"}, {"WrhRef", "W2"}, {"StockQ", "molte"}}},
             {{"PrdRef"}}}};
}

/// What the CAM has measured of the parts.
Table ValuesTable() {
    return {"DIS_SHPR_PPTT_00000200",
            "articoli",
            Parts,
            {{{"RecID", 'I'}, [](const Place& place) { return QVariant(place.row + 1); }},
             {{"PartRef", 'C', 60}, PartCode()},
             {{"WrkRef", 'C', 20}, Fixed("LASER1")},
             {{"OprRef", 'C', 20}, Fixed("TAGL")},
             {{"MCode", 'C', 10}, Fixed("ND025")},
             {{"DValue", 'N', 12, 3}, Number(0.1, 9, 3)}},
            {},
            {{"PartRef"}}};
}

} // namespace

} // namespace lantek24

Totals MakeLantek24(const Options& options) {
    using namespace lantek24;
    QuadrixScript script(options.company);
    Prepare(script);
    script.Translate("CCOO_CCOO", "PymName", "RB 30", "RB30");
    script.Translate("SSHH_PPOO", "PymName", "RB 30", "RB30");
    const QVector<Table> tables = CompanyTables() + QVector<Table>{ProductsTable(), OperationsTable(), CostsTable()} +
                                  PurchaseTables() + WorkOrderTables() + StockTables();
    return Write("lantek24.db", tables, options, script);
}

Totals MakeLantek30(const Options& options) {
    using namespace lantek24;
    QuadrixScript script(options.company);
    Prepare(script);
    return Write("lantek30.db", {ProductsTable(), OperationsTable(), ValuesTable(), StockTables().last()}, options,
                 script);
}

} // namespace examples
