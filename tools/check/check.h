#pragma once

#include <vector>

#include "tools/catalogue_source.h"
#include "tools/check/checked_catalogue.h"
#include "tools/check/finding.h"

// Everything that is wrong or doubtful about a catalogue, the modules file first, each file in the
// order of its lines. Whenever the console ends up without a block or a key that a file shows,
// there is an error among the findings. Prints nothing.
std::vector<Finding> CheckCatalogue(const CataloguePaths& paths);

// The parts of the check. Each adds its findings about one file, or about both.

// rows.cpp: what is no row of a block, over a limit, given twice, or cut.
void CheckRows(const std::vector<KeyRow>& head, FindingList& findings);
void CheckRows(const CatalogueBlock& block, FindingList& findings);

// values.cpp: the values of a block by themselves.
void CheckValues(const ModuleBlock& block, FindingList& findings);
void CheckValues(const CmdBlock& block, FindingList& findings);

// fates.cpp: what became of the blocks when the console filed them, and what they are to each
// other.
void CheckFates(const CheckedCatalogue& checked, FindingList& moduleFindings,
                FindingList& commandFindings);
