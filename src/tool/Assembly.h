// Builds a configuration from another one and the rows of a table.
#pragma once

#include <vector>

#include "tool/RowTree.h"

/// Copies everything from `base` to `result`, whose tree must contain only the root. A device,
/// branch or item with a row in the table gets the values of that row. Rows for which `base` has
/// nothing are added after that. Adds a finding for each fault; with a finding of severity error,
/// `result` is incomplete and must not be saved.
void assemble(const Document& base, const Table& table, Document& result,
              std::vector<Finding>& findings);
