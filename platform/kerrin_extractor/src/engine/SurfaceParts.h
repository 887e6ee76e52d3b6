// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace kx {

/// An edge of the mesh by the ids of its ends, the smaller one first; both are the same for a vertex on a node.
using NodeEdge = std::pair<std::size_t, std::size_t>;

/// A surface while it comes into being: in parts that are made side by side, each from some cells in a row.
///
/// Each part numbers its cut edges for itself, in the order in which it meets them, with a hash table that stays in the
/// cache; its polygons take two bytes a corner. Cells in a row tend to have nodes in a row, so each part then sets
/// apart the edges that no other part can have, because it alone has nodes in some range. Of the others, those that
/// several parts have are found, block by block of nodes, and belong to the first of these parts. Vertices are numbered
/// part by part: their order does not depend on the threads, and neighbours in the surface are neighbours in memory.
///
/// `Id` holds any node id.
template <class Id>
class SurfaceParts {
public:
  struct Edge {
    Id a;
    Id b;
    friend bool operator==(const Edge&, const Edge&) = default;
  };
  /// Local numbers of edges are less than this, which also ends a polygon.
  static constexpr std::uint16_t END = 0xffff;

  struct Part {
    std::size_t firstCell;
    std::vector<Edge> edges;
    std::vector<std::uint16_t> indices; ///< the polygons by their edges, `END` behind each
    std::vector<std::uint16_t> cells;   ///< input cell of each polygon, counted from `firstCell`
    Id beginId;                         ///< nodes of the edges lie in [beginId, endId)
    Id endId;
    /// The edges that other parts may have, sorted by blocks of nodes, and where each block begins.
    std::vector<std::uint16_t> order;
    std::vector<std::uint16_t> blockBegins;
  };

  /// Makes the parts of a chunk of up to 65 536 cells: one, or more where a part gets too many edges.
  class Builder {
  public:
    Builder(SurfaceParts& parts, std::size_t chunk, std::size_t firstCell);
    ~Builder() { closePart(); }
    Builder(const Builder&) = delete;
    Builder& operator=(const Builder&) = delete;

    /// Greatest number of edges that one cell may bring.
    static constexpr std::size_t MAX_EDGES = 65534;
    /// To be called before a cell's polygons are added.
    void reserve(std::size_t numEdges, std::size_t numIndices, std::size_t numPolygons) {
      if (m_numEdges + numEdges >= m_maxEdges) makeRoom(numEdges);
      if (m_numIndices + numIndices > m_indices.size()) m_indices.resize(2 * (m_numIndices + numIndices));
      if (m_numPolygons + numPolygons > m_cells.size()) m_cells.resize(2 * (m_numPolygons + numPolygons));
    }
    /// The part's number of an edge.
    std::uint16_t find(Id a, Id b);
    /// Room for indices, as many as were asked for; some behind the ones that `addIndices` adds may be overwritten.
    std::uint16_t* indices() { return m_indices.data() + m_numIndices; }
    void addIndices(std::size_t count) { m_numIndices += count; }
    void addPolygons(std::size_t cell, std::size_t count) {
      for (std::size_t i = 0; i < count; ++i)
        m_cells[m_numPolygons++] = static_cast<std::uint16_t>(cell - m_firstCell);
    }

  private:
    std::size_t slotOf(const Edge& edge) const;
    void makeRoom(std::size_t numEdges);
    void closePart();

    SurfaceParts& m_parts;
    std::size_t m_chunk;
    std::size_t m_firstCell;
    std::vector<Edge> m_edges; ///< one more than there are is written in advance
    std::size_t m_numEdges = 0;
    std::size_t m_maxEdges = 0;
    std::vector<std::uint16_t> m_slots;
    unsigned m_slotShift = 0;
    std::vector<std::uint16_t> m_indices;
    std::size_t m_numIndices = 0;
    std::vector<std::uint16_t> m_cells;
    std::size_t m_numPolygons = 0;
  };

  /// Drops all parts and their memory. Node ids lie in [beginId, endId).
  void reset(std::size_t numChunks, std::size_t beginId, std::size_t endId);

  /// Sums of all parts, once they are built.
  struct Sizes {
    std::size_t numEdges = 0;
    std::size_t numIndices = 0;
    std::size_t numPolygons = 0;
  };
  Sizes close();
  std::size_t numParts() const { return m_parts.size(); }
  const Part& part(std::size_t number) const { return *m_parts[number]; }
  /// What the parts in front of one have in all.
  const Sizes& begin(std::size_t number) const { return m_begins[number]; }

  /// Sets the edges apart that no other part has.
  void share(std::size_t number);
  /// Finds the parts to which the edges of a block belong, once all parts are shared.
  std::size_t numBlocks() const { return m_numBlocks; }
  void merge(std::size_t block);
  /// The first vertex of each part and, behind them, the number of all, once all blocks are merged.
  std::vector<std::size_t> vertexBegins() const;
  /// Numbers the vertices that belong to a part and yields their edges in that order.
  void numberVertices(std::size_t number, std::size_t firstVertex, std::vector<NodeEdge>& edges);
  /// The vertex on each edge of a part, once all are numbered.
  void findVertices(std::size_t number, std::vector<std::int32_t>& vertices) const;

private:
  static constexpr std::uint32_t IS_VERTEX = 0x80000000u;

  static std::uint64_t hash(const Edge& edge) {
    return edge.a * 0x9e3779b97f4a7c15u + edge.b * 0xc2b2ae3d27d4eb4fu; // odd numbers without a pattern
  }
  /// A range of nodes that only this part has; empty when there is none.
  std::pair<Id, Id> ownRange(std::size_t number) const;
  std::size_t blockOf(const Edge& edge) const { return (edge.a - m_beginId) >> m_blockShift; }

  std::vector<std::vector<Part>> m_chunks; ///< the parts of each chunk
  std::vector<Part*> m_parts;
  std::vector<Sizes> m_begins;
  std::size_t m_beginId = 0;
  unsigned m_blockShift = 0;
  std::size_t m_numBlocks = 0;
  /// Of each edge of each part: the same edge in the first part that has it, later its vertex with `IS_VERTEX`.
  Array<std::uint32_t> m_vertices;
  std::vector<std::uint32_t> m_numOwned; ///< vertices of each part
};

template <class Id>
inline std::size_t SurfaceParts<Id>::Builder::slotOf(const Edge& edge) const {
  return static_cast<std::size_t>(hash(edge) >> m_slotShift);
}

template <class Id>
inline std::uint16_t SurfaceParts<Id>::Builder::find(Id a, Id b) {
  // Whether an edge is new and which end is greater cannot be foreseen: both answers take the same path, and the next
  // edge is written in advance.
  const Id exchange = (a ^ b) & (Id{0} - static_cast<Id>(b < a));
  const Edge edge{a ^ exchange, b ^ exchange};
  m_edges[m_numEdges] = edge;
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t slot = slotOf(edge);; slot = (slot + 1) & mask) {
    const std::uint16_t known = m_slots[slot];
    const bool isNew = known == END;
    const auto number = isNew ? static_cast<std::uint16_t>(m_numEdges) : known;
    if (!(m_edges[number] == edge)) continue;
    m_slots[slot] = number;
    m_numEdges += isNew;
    return number;
  }
}

extern template class SurfaceParts<std::uint32_t>;
extern template class SurfaceParts<std::uint64_t>;

} // namespace kx
