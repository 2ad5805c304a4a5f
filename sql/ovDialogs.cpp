#include "sql/ovDialogs.h"

bool ovDialogs::ovShowOpen() {
    FileName = ShowOpenFile(DialogTitle, Filter);
    return !FileName.isEmpty();
}
