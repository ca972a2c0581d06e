// The tables of the books, by version. A database of a version that is not known is refused and left alone.
#pragma once

#include "records/qt/sql_link.h"

namespace kvr::records {

// Makes the tables, or brings older ones up to date, in one transaction.
StoreFault bringUpToDate(SqlLink& link);

}  // namespace kvr::records
