#pragma once

#include <vector>

#include "tools/catalogue_source.h"
#include "tools/finding.h"

struct CatalogueBlocks;

// Everything that is wrong or doubtful about a catalogue, the modules file first, each file in the
// order of its lines. Whenever the console ends up without a block or a key that a file shows,
// there is an error among the findings. Prints nothing.
std::vector<Finding> CheckCatalogue(const CataloguePaths& paths);

// The parts of the check. Each adds its findings about one file, or about both.

// check_rows.cpp: what is no row of a block, over a limit, given twice, or cut.
void CheckRows(const CatalogueBlocks& file, FindingList& findings);

// check_values.cpp: the values of each block by themselves.
void CheckModuleValues(const CatalogueBlocks& modules, FindingList& findings);
void CheckCommandValues(const CatalogueBlocks& commands, FindingList& findings);

// check_lookup.cpp: what the blocks are to each other, by the console's rules of storing them.
void CheckLookup(const CatalogueBlocks& modules, const CatalogueBlocks& commands,
                 FindingList& moduleFindings, FindingList& commandFindings);
