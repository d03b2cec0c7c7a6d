// Placeholder: being written.
#include "ZSortDialog.h"
