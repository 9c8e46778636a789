#pragma once

#include <cstddef>
#include <string>

// The documents the benchmark measures, made on the spot so that every run parses the same
// text: a small install description, and catalogues of a given size with attributes, entity
// and character references, CDATA sections, comments and non-ASCII text. All UTF-8.
std::string MakeInstallDescription();
std::string MakeCatalogue(size_t bytes);
// A root with `children` empty <Item/> elements and a last <End/>.
std::string MakeSiblings(size_t children);
