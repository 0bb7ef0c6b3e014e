// The order of the nodes on the chain of the model.
// Every node has a tag of 63 bits, and tags rise along the chain. An insertion takes the middle
// between its neighbours. If they leave no room, the smallest range of 2^i tags around them that
// has at most (2 / T)^i nodes is tagged anew at equal distances (M. Bender, R. Cole, E. Demaine,
// M. Farach-Colton, J. Zito, "Two simplified algorithms for maintaining order in a list", 2002,
// where T is the overflow threshold).
#include <algorithm>

#include "Library/job/dbmodel.h"

namespace clxml {
namespace {

constexpr int universeBits = 63;
constexpr uint64_t universe = uint64_t{1} << universeBits;
constexpr uint64_t step = uint64_t{1} << 32;  // between appended nodes
constexpr uint64_t firstTag = uint64_t{1} << 61;
// Between 1 and 2; with 1.4 the universe has room for (2 / 1.4)^63 = 5.7e9 nodes.
constexpr double overflowThreshold = 1.4;

}  // namespace

void dbModel_Order::Prepare (const dbModel_Thread& chain, DBID id) {
  if (id.value < _Tags.size ()) return;
  if (IsBuilt ()) {
    _Tags.resize (std::size_t{id.value} + 1);
    return;
  }
  uint32_t highest = id.value;
  for (const dbModel_Node* node = chain.Front (); node; node = node->ChainForward)
    highest = std::max (highest, node->DBRecord->RecordId.value);
  _Tags.resize (std::size_t{highest} + 1);
  uint64_t tag = firstTag;
  for (const dbModel_Node* node = chain.Front (); node; node = node->ChainForward, tag += step)
    TagOf (*node) = tag;
}

void dbModel_Order::Enter (const dbModel_Node& node) noexcept {
  const dbModel_Node* before = node.ChainBack;
  const dbModel_Node* after = node.ChainForward;
  for (;;) {
    const uint64_t low = before ? TagOf (*before) : 0;
    const uint64_t high = after ? TagOf (*after) : universe;
    uint64_t distance = (high - low) / 2;
    if (distance > 0) {
      if (!after && step < distance) distance = step;
      if (!before && step < distance) distance = high - step;
      TagOf (node) = low + distance;
      return;
    }
    MakeRoom (node);
  }
}

// Spreads the neighbours of a node that has no tag yet.
void dbModel_Order::MakeRoom (const dbModel_Node& untagged) noexcept {
  const auto back = [&] (const dbModel_Node* node) {
    return node->ChainBack == &untagged ? untagged.ChainBack : node->ChainBack;
  };
  const auto forward = [&] (const dbModel_Node* node) {
    return node->ChainForward == &untagged ? untagged.ChainForward : node->ChainForward;
  };
  const dbModel_Node* first = untagged.ChainForward ? untagged.ChainForward : untagged.ChainBack;
  const dbModel_Node* last = first;
  const uint64_t around = TagOf (*first);
  uint64_t count = 1;
  double capacity = 1.0;
  for (int bits = 1; bits <= universeBits; bits++) {
    const uint64_t size = uint64_t{1} << bits;
    const uint64_t low = around & ~(size - 1);
    capacity *= 2.0 / overflowThreshold;
    for (const dbModel_Node* n = back (first); n && TagOf (*n) >= low; n = back (n), count++)
      first = n;
    for (const dbModel_Node* n = forward (last); n && TagOf (*n) - low < size;
         n = forward (n), count++)
      last = n;
    // Two tags for each node leave one between any two of them.
    const uint64_t distance = size / count;
    if (static_cast<double> (count) > capacity || distance < 2) continue;
    uint64_t tag = low + distance / 2;
    for (const dbModel_Node* n = first;; n = forward (n), tag += distance) {
      TagOf (*n) = tag;
      if (n == last) return;
    }
  }
}

}  // namespace clxml
