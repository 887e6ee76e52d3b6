// SPDX-License-Identifier: BSD-3-Clause
#include "UnstructuredSkin.h"

#include "Blocks.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 8192;          // cells of one step
constexpr std::size_t CELLS_PER_PART = 1024; // there is one partition for so many cells, up to
constexpr std::size_t MAX_PARTS = 256;

/// The halves of the 128-bit product, combined (the mixing step of Wang Yi's wyhash).
std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}
std::uint64_t nodeHash(std::size_t id) { return mix(id ^ 0xa0761d6478bd642fu, 0xe7037ed1a0b428dbu); }
/// From the sum of the corners' hashes, so that the order of corners doesn't matter. Never 0.
std::uint64_t faceHash(std::uint64_t sum) { return mix(sum ^ 0x8ebc6af09c88c6e3u, 0x589965cc75374cc3u) | 1; }

template <std::size_t N>
bool hasRepeats(const CellNodes& nodes) {
  unsigned repeats = 0;
  for (std::size_t a = 0; a + 1 < N; ++a)
    for (std::size_t b = a + 1; b < N; ++b)
      repeats |= static_cast<unsigned>(nodes[a] == nodes[b]);
  return repeats != 0;
}

/// Calls `visit(face, owner, hash)` for each face of a cell with distinct corners; `owner` is the smallest node.
template <CellCode CODE, class Visit>
void visitFaces(const CellNodes& nodes, Visit&& visit) {
  std::array<std::uint64_t, NUM_CORNERS[CODE]> hashes;
  for (std::size_t c = 0; c < NUM_CORNERS[CODE]; ++c)
    hashes[c] = nodeHash(nodes[c]);
  const auto visitFace = [&]<std::size_t F>(std::integral_constant<std::size_t, F>) {
    constexpr CellFace face = CELL_FACES[CODE].faces[F];
    std::uint64_t sum = hashes[face.corners[0]] + hashes[face.corners[1]] + hashes[face.corners[2]];
    std::size_t owner = std::min(std::min(nodes[face.corners[0]], nodes[face.corners[1]]), nodes[face.corners[2]]);
    if constexpr (face.numCorners == 4) {
      sum += hashes[face.corners[3]];
      owner = std::min(owner, nodes[face.corners[3]]);
    }
    visit(F, owner, faceHash(sum));
  };
  [&]<std::size_t... F>(std::index_sequence<F...>) { (visitFace(std::integral_constant<std::size_t, F>()), ...); }
  (std::make_index_sequence<CELL_FACES[CODE].numFaces>());
}

/// The same for a face whose corners may repeat; the sum goes over distinct corners. Faces with fewer than three of
/// them are left out.
template <class Visit>
void visitPolygon(std::size_t face, std::vector<std::size_t>& corners, Visit&& visit) {
  std::sort(corners.begin(), corners.end());
  corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
  if (corners.size() < 3) return;
  std::uint64_t sum = 0;
  for (const std::size_t node : corners)
    sum += nodeHash(node);
  visit(face, corners.front(), faceHash(sum));
}

struct Scratch {
  std::vector<std::vector<std::size_t>> faces;
  std::vector<std::size_t> nodes;
  std::vector<std::size_t> corners;
};

enum class Reading { DONE, UNREADABLE_CELL, NODE_OUT_OF_RANGE };

/// Calls `visit(face, owner, hash)` for the faces of any cell.
template <class Cells, class Visit>
Reading visitCell(const MeshView& mesh, const Cells& cells, std::size_t cell, Scratch& scratch, Visit&& visit) {
  const std::size_t numNodes = mesh.numNodes();
  const auto areNodes = [&](const auto& ids, std::size_t count) {
    std::size_t greatest = 0;
    for (std::size_t i = 0; i < count; ++i)
      greatest = std::max(greatest, ids[i] - mesh.beginNode);
    return greatest < numNodes;
  };
  CellNodes nodes;
  const CellCode code = cells.load(cell, nodes);
  const auto visitShape = [&]<CellCode CODE>(std::integral_constant<CellCode, CODE>) {
    constexpr std::size_t n = NUM_CORNERS[CODE];
    if (!areNodes(nodes, n)) return Reading::NODE_OUT_OF_RANGE;
    if (!hasRepeats<n>(nodes)) {
      visitFaces<CODE>(nodes, visit);
      return Reading::DONE;
    }
    for (std::size_t f = 0; f < CELL_FACES[CODE].numFaces; ++f) {
      const CellFace& face = CELL_FACES[CODE].faces[f];
      scratch.corners.clear();
      for (std::size_t c = 0; c < face.numCorners; ++c)
        scratch.corners.push_back(nodes[face.corners[c]]);
      visitPolygon(f, scratch.corners, visit);
    }
    return Reading::DONE;
  };
  switch (code) {
  case TETRAHEDRON:
    return visitShape(std::integral_constant<CellCode, TETRAHEDRON>());
  case PYRAMID:
    return visitShape(std::integral_constant<CellCode, PYRAMID>());
  case WEDGE:
    return visitShape(std::integral_constant<CellCode, WEDGE>());
  case HEXAHEDRON:
    return visitShape(std::integral_constant<CellCode, HEXAHEDRON>());
  case POLYHEDRON:
    if (!mesh.loadPolyhedron(cell, scratch.faces, scratch.nodes) || scratch.faces.size() > FaceRef::END_FACE)
      return Reading::UNREADABLE_CELL;
    if (!areNodes(scratch.nodes, scratch.nodes.size())) return Reading::NODE_OUT_OF_RANGE;
    for (std::size_t f = 0; f < scratch.faces.size(); ++f) {
      scratch.corners.clear();
      for (const std::size_t local : scratch.faces[f])
        scratch.corners.push_back(scratch.nodes[local]);
      visitPolygon(f, scratch.corners, visit);
    }
    return Reading::DONE;
  default:
    return Reading::UNREADABLE_CELL;
  }
}

/// Calls `visit(cell)` for the open cells of a chunk.
template <class Visit>
void visitChunk(const MeshView& mesh, const CellRanges& ranges, std::size_t chunk, Visit&& visit) {
  const bool hasClosedCells = mesh.hasClosedCells();
  for (const auto& [begin, end] : ranges.within(chunk * CHUNK, std::min((chunk + 1) * CHUNK, mesh.numCells)))
    for (std::size_t cell = begin; cell < end; ++cell)
      if (!hasClosedCells || mesh.isOpen(cell)) visit(cell);
}

/// One word for two nodes. Pages that nobody writes cost nothing.
class Words {
public:
  explicit Words(std::size_t numWords)
      : m_words(static_cast<std::uint64_t*>(std::calloc(std::max<std::size_t>(numWords, 1), sizeof(std::uint64_t)))) {
    if (!m_words) throw std::bad_alloc();
  }
  void combine(std::size_t word, std::uint64_t hash) {
    std::atomic_ref<std::uint64_t>(m_words.get()[word]).fetch_xor(hash, std::memory_order_relaxed);
  }
  std::uint64_t operator[](std::size_t word) const { return m_words.get()[word]; }

private:
  struct Free {
    void operator()(std::uint64_t* p) const { std::free(p); }
  };
  std::unique_ptr<std::uint64_t, Free> m_words;
};

/// Combines fingerprints of near-by words locally, since neighbouring cells meet the same ones, and passes them on when
/// another word needs the place.
class LocalWords {
public:
  explicit LocalWords(Words& words)
      : m_words(words) {}
  ~LocalWords() {
    for (Place& place : m_places)
      pass(place);
  }
  void combine(std::size_t word, std::uint64_t hash) {
    Place& place = m_places[word % SIZE];
    if (place.word != word) {
      pass(place);
      place = {word, 0};
    }
    place.hash ^= hash;
  }

private:
  static constexpr std::size_t SIZE = 1024;
  struct Place {
    std::size_t word = 0;
    std::uint64_t hash = 0;
  };
  void pass(const Place& place) {
    if (place.hash != 0) m_words.combine(place.word, place.hash);
  }

  Words& m_words;
  std::array<Place, SIZE> m_places;
};

/// The faces of one chunk at nodes with unpaired faces, ordered by partition.
struct Candidates {
  std::unique_ptr<FaceRef[]> faces;
  std::vector<std::uint32_t> begins; ///< of each partition, and the end
};

/// The corners of a face, in ascending order and each once: what tells it from others.
class FaceKey {
public:
  FaceKey() = default; ///< no face's
  FaceKey(const std::size_t* nodes, std::size_t count) {
    if (count <= m_words.size() && nodes[count - 1] < LARGE) {
      for (std::size_t n = 0; n < count; ++n)
        m_words[n] = static_cast<std::uint32_t>(nodes[n]);
      return;
    }
    std::uint64_t hash = count;
    for (std::size_t n = 0; n < count; ++n)
      hash = mix(hash ^ nodeHash(nodes[n]), 0x589965cc75374cc3u);
    m_words = {static_cast<std::uint32_t>(hash), static_cast<std::uint32_t>(hash >> 32), LARGE, LARGE};
  }
  /// Whether faces of equal keys may differ: more or greater nodes than there is space for.
  bool isLarge() const { return m_words[2] == LARGE; }
  bool isNone() const { return m_words[2] == NONE; }
  std::uint64_t hash() const {
    const auto pair = [this](std::size_t i) { return std::uint64_t{m_words[i]} << 32 | m_words[i + 1]; };
    return mix(pair(0) ^ 0x8ebc6af09c88c6e3u, pair(2) ^ 0x589965cc75374cc3u);
  }
  friend bool operator==(const FaceKey&, const FaceKey&) = default;

private:
  static constexpr std::uint32_t NONE = 0xffffffffu;
  static constexpr std::uint32_t LARGE = 0xfffffffeu;
  std::array<std::uint32_t, 4> m_words{NONE, NONE, NONE, NONE}; ///< only the last one of a triangle is none
};

/// The distinct corners of candidates in ascending order.
template <class Cells>
class SortedCorners {
public:
  SortedCorners(const MeshView& mesh, const Cells& cells)
      : m_mesh(mesh)
      , m_cells(cells) {}

  void read(FaceRef ref) {
    m_corners.load(m_mesh, m_cells, ref);
    std::vector<std::size_t>& ids = m_corners.ids;
    count = m_corners.count;
    const auto order = [&](std::size_t a, std::size_t b) {
      const std::size_t smaller = std::min(ids[a], ids[b]);
      ids[b] = std::max(ids[a], ids[b]);
      ids[a] = smaller;
    };
    if (count == 3) {
      order(0, 1);
      order(1, 2);
      order(0, 1);
    } else if (count == 4) {
      order(0, 1);
      order(2, 3);
      order(0, 2);
      order(1, 3);
      order(1, 2);
    } else {
      std::sort(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(count));
    }
    std::size_t numDistinct = 1;
    for (std::size_t c = 1; c < count; ++c)
      if (ids[c] != ids[numDistinct - 1]) ids[numDistinct++] = ids[c];
    count = numDistinct;
  }
  const std::size_t* nodes() const { return m_corners.ids.data(); }
  FaceKey key() const { return FaceKey(nodes(), count); }
  friend bool operator==(const SortedCorners& a, const SortedCorners& b) {
    return std::equal(a.nodes(), a.nodes() + a.count, b.nodes(), b.nodes() + b.count);
  }
  std::size_t count = 0;

private:
  const MeshView& m_mesh;
  const Cells& m_cells;
  FaceCorners m_corners;
};

/// The faces of one partition that have one cell.
void matchFaces(const MeshView& mesh, const std::vector<Candidates>& chunks, std::size_t part,
                std::vector<FaceRef>& unpaired) {
  struct Entry {
    FaceKey key;
    FaceRef known;
    std::uint64_t lastCell = 0;
    std::uint32_t numCells = 0; // without those that have the face twice
    std::uint32_t first = 0;    // candidate number
  };
  constexpr std::uint64_t NO_CELL = ~std::uint64_t{0};
  std::size_t count = 0;
  for (const Candidates& c : chunks)
    if (!c.begins.empty()) count += c.begins[part + 1] - c.begins[part];
  if (count == 0) return;
  std::vector<Entry> table(std::bit_ceil(2 * count));
  std::vector<std::uint32_t> places(count);
  std::size_t number = 0;
  const auto visitCandidates = [&](auto&& visit) {
    number = 0;
    for (const Candidates& c : chunks)
      if (!c.begins.empty())
        for (std::uint32_t i = c.begins[part]; i < c.begins[part + 1]; ++i, ++number)
          visit(c.faces[i]);
  };
  std::visit(
      [&](const auto& cells) {
        SortedCorners corners(mesh, cells);
        SortedCorners otherCorners(mesh, cells);
        const auto isOther = [&](const Entry& entry, const FaceKey& key) {
          if (entry.key != key) return true;
          if (!key.isLarge()) return false;
          otherCorners.read(entry.known);
          return !(corners == otherCorners);
        };
        visitCandidates([&](FaceRef ref) {
          corners.read(ref);
          const FaceKey key = corners.key();
          std::size_t place = key.hash() & (table.size() - 1);
          while (!table[place].key.isNone() && isOther(table[place], key))
            place = (place + 1) & (table.size() - 1);
          Entry& entry = table[place];
          places[number] = static_cast<std::uint32_t>(place);
          if (entry.key.isNone()) {
            entry.key = key;
            entry.known = ref;
          }
          if (entry.numCells > 0 && entry.lastCell == ref.cell) {
            --entry.numCells;
            entry.lastCell = NO_CELL;
            return;
          }
          if (entry.numCells++ == 0) entry.first = static_cast<std::uint32_t>(number);
          entry.lastCell = ref.cell;
        });
      },
      mesh.cells);
  visitCandidates([&](FaceRef ref) {
    const Entry& entry = table[places[number]];
    if (entry.numCells == 1 && entry.first == number) unpaired.push_back(ref);
  });
}

/// What the passes over the cells share.
struct Search {
  Search(const MeshView& input, const CellRanges& cellRanges, std::size_t partitions)
      : mesh(input)
      , ranges(cellRanges)
      , numParts(partitions)
      , numWords(input.numNodes() / 2 + 1)
      , words(numWords) {}
  std::size_t wordOf(std::size_t node) const { return (node - mesh.beginNode) / 2; }

  const MeshView& mesh;
  const CellRanges& ranges;
  std::size_t numParts;
  std::size_t numWords;
  Words words;
};

/// Combines the fingerprints of a chunk's faces: those of two cells cancel out.
void pairFaces(Search& search, std::size_t chunk, Faults& faults) {
  LocalWords local(search.words);
  Scratch scratch;
  std::visit(
      [&](const auto& cells) {
        visitChunk(search.mesh, search.ranges, chunk, [&](std::size_t cell) {
          const Reading reading =
              visitCell(search.mesh, cells, cell, scratch, [&](std::size_t, std::size_t owner, std::uint64_t hash) {
                local.combine(search.wordOf(owner), hash);
              });
          if (reading == Reading::UNREADABLE_CELL) faults.add(Faults::UNREADABLE_CELL, cell);
          if (reading == Reading::NODE_OUT_OF_RANGE) faults.add(Faults::NODE_OUT_OF_RANGE, cell);
        });
      },
      search.mesh.cells);
}

/// The faces of a chunk at words where something is left.
void collectUnpaired(const Search& search, std::size_t chunk, Candidates& out) {
  thread_local std::vector<std::pair<FaceRef, std::uint32_t>> found;
  found.clear();
  Scratch scratch;
  std::vector<std::uint32_t> ends(search.numParts + 1, 0);
  std::visit(
      [&](const auto& cells) {
        visitChunk(search.mesh, search.ranges, chunk, [&](std::size_t cell) {
          // Nearly all cells are far from the skin, which their nodes tell at once.
          CellNodes nodes;
          if (const CellCode code = cells.load(cell, nodes); code < POLYHEDRON) {
            std::uint64_t unpaired = 0;
            for (std::size_t c = 0; c < NUM_CORNERS[code]; ++c)
              unpaired |= search.words[std::min(search.wordOf(nodes[c]), search.numWords - 1)];
            if (unpaired == 0) return;
          }
          visitCell(search.mesh, cells, cell, scratch, [&](std::size_t face, std::size_t owner, std::uint64_t) {
            const std::size_t word = search.wordOf(owner);
            if (search.words[word] == 0) return;
            const auto part = static_cast<std::uint32_t>(word * search.numParts / search.numWords);
            found.emplace_back(FaceRef(cell, face), part);
            ++ends[part + 1];
          });
        });
      },
      search.mesh.cells);
  if (found.empty()) return;
  for (std::size_t p = 0; p < search.numParts; ++p)
    ends[p + 1] += ends[p];
  out.begins = ends;
  out.faces.reset(new FaceRef[found.size()]);
  for (const auto& [ref, part] : found)
    out.faces[ends[part]++] = ref;
}

} // namespace

void UnstructuredSkin::find(Run& run, const MeshView& mesh, const CellRanges& ranges, FaceList& faces, Faults& faults) {
  const std::size_t numChunks = numBlocksOf(mesh.numCells, CHUNK);
  const std::size_t numParts = std::clamp<std::size_t>(mesh.numCells / CELLS_PER_PART, 1, MAX_PARTS);
  std::vector<Candidates> chunks(numChunks);
  {
    Search search(mesh, ranges, numParts);
    run.phase("pair faces", numChunks, [&](std::size_t chunk) { pairFaces(search, chunk, faults); });
    run.phase("collect unpaired faces", numChunks,
              [&](std::size_t chunk) { collectUnpaired(search, chunk, chunks[chunk]); });
  }
  std::vector<std::vector<FaceRef>> parts(numParts);
  run.phase("match faces", numParts, [&](std::size_t part) { matchFaces(mesh, chunks, part, parts[part]); });
  chunks.clear();
  std::size_t count = 0;
  for (const std::vector<FaceRef>& part : parts)
    count += part.size();
  faces.resize(count);
  FaceRef* next = faces.data();
  for (const std::vector<FaceRef>& part : parts)
    next = std::copy(part.begin(), part.end(), next);
}

} // namespace kx
