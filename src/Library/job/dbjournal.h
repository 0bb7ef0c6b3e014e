// The job file: a journal of framed, checksummed transactions.
// placeholder
#pragma once

#include "Library/job/dbmodel.h"
#include "Library/job/filehdr.h"
