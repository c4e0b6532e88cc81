// Builds a configuration of another one and the rows of a table.
#pragma once

#include <vector>

#include "tool/RowTree.h"

/// Enters everything of `base` into `result`, which holds its root only, each as its row has it
/// where there is one, and what else the rows describe after it. Adds a finding for each fault;
/// `result` is of no use then.
void assemble(const Document& base, const Table& table, Document& result,
              std::vector<Finding>& findings);
