#include "core/schemaLines.h"

namespace schema {

namespace {

constexpr Line SystemTablesLines[] = {
    SharedTable("SYS_AZI", "CDAZI"),
    Text("CDAZI", 10),
    Words("AZRAS", 60).Indexed(),

    // which column (TABNM, COLNM) holds codes of which other (TABLK, COLLK)
    SharedTable("SYS_SYS", "TABLK COLLK"),
    Text("TABLK", 20),
    Text("COLLK", 20),
    Text("TABNM", 20),
    Text("COLNM", 20),
    Text("CONNM", 255),

    // kind of value of every column
    SharedTable("SYS_SYS_COL", "TABNM COLNM"),
    Text("TABNM", 20),
    Text("COLNM", 20),
    Whole("COLTP"),

    SharedTable("SYS_IMP", "TBNAM TBFLD TBOLD"),
    Text("TBNAM", 20),
    Text("TBFLD", 20),
    Text("TBOLD", 100).Indexed(),
    Text("TBNEW", 100),

    // merges of counterparties that re-pointed the references of a company (FUPAR) to the codes of another (FUDES);
    // the program's own, made by the first of them
    SharedTable("SYS_FUS", "FUPAR FUDES"),
    Text("FUPAR", 10),
    Text("FUDES", 10),
    Day("FUINI"),
    Day("FUFIN"),
    Text("FUUTE", 60),

    SharedTable("SYS_LNG", "LNTBL LNKEY LNFLD"),
    Text("LNTBL", 50),
    Text("LNFLD", 20),
    Text("LNKEY", 50),
    Code("LNLNG", "TAB_LNG"),
    Notes("LNTXT"),

    SharedTable("SYS_ATT", "ATTBL ATKEY"),
    Text("ATTBL", 50),
    Text("ATKEY", 50),
    Text("ATNAM", 255),
    Words("ATDES", 255),
    Text("ATLNK", 500),
    Text("ATTYP", 20),
    Large("ATSIZ"),
    Day("ATDAT"),
    Flag("ATCHK"),
    Text("ATREV", 20),

    SharedTable("SYS_PIT", "PITBL PIKEY"),
    Text("PITBL", 50),
    Text("PIKEY", 50),
    Number("PILEF"),
    Number("PITOP"),
    Number("PIWTH"),
    Number("PIHGH"),
    Flag("PIVIS"),
    Notes("PINOT"),

    CompanyTable("FLD_VAL", "FLTAB FLKEY"),
    Text("FLTAB", 20),
    Text("FLKEY", 50).Names("CON_TRO", "FLTAB"),
    Text("FLFLD", 50),
    Notes("FLVAL"),
    Text("FLDEF", 255),

    CompanyTable("IMA_GES", "TBNAM TBKEY"),
    Text("TBNAM", 20),
    Text("TBKEY", 50).Names("CON_TRO", "TBNAM"),
    Bytes("IMIMG"),

    // only emptied
    SharedTable("SYS_LOG"),
    SharedTable("SYS_MSG"),
    SharedTable("SYS_CFG"),
    SharedTable("SYS_LAY"),
};

} // namespace

std::span<const Line> SystemTables() { return SystemTablesLines; }

} // namespace schema
