// The files that take part in a comparison.
#pragma once

#include <cstddef>
#include <deque>

#include "props/prop_cache.h"

namespace kelvane {

// A candidate is the context of one admitted file: its item, its cached values and its group field.
using Candidate = ItemContext;

// Candidates in the order in which they were found. Addresses stay valid while the list lives.
using CandidateList = std::deque<Candidate>;

}  // namespace kelvane
