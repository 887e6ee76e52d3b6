// SPDX-License-Identifier: BSD-3-Clause
#include "SampleFiles.h"

namespace {

/// The corners of a cube in the order of a lattice.
const std::string cube = "0 0 0 1 0 0 0 1 0 1 1 0 0 0 1 1 0 1 0 1 1 1 1 1\n";

std::string legacy(const std::string& kind, const std::string& body) {
  return "# vtk DataFile Version 3.0\nmade by hand\nASCII\nDATASET " + kind + "\n" + body;
}

/// A scalar and a vector at each of eight points, and a string, a number and a ghost flag for each cell.
std::string legacySets(int numCells) {
  std::string text =
      "POINT_DATA 8\nSCALARS s float 1\nLOOKUP_TABLE default\n0 1 2 3 4 5 6 7\nVECTORS v double\n" + cube;
  const std::string count = std::to_string(numCells);
  text += "CELL_DATA " + count + "\nFIELD f 3\n";
  const auto add = [&](const std::string& head, const std::string& value) {
    text.append(head).append(" 1 ").append(count).append(value.size() == 1 ? " int\n" : " string\n");
    for (int c = 0; c < numCells; ++c)
      text.append(value).append("\n");
  };
  add("n", "7");
  add("t", "sand");
  text += "vtkGhostType 1 " + count + " unsigned_char\n";
  for (int c = 0; c < numCells; ++c)
    text += "0 ";
  return text + "\n";
}

std::string array(const std::string& type, const std::string& name, const std::string& values, int components = 1) {
  return "<DataArray type=\"" + type + "\" Name=\"" + name + "\" NumberOfComponents=\"" + std::to_string(components) +
         "\" format=\"ascii\">" + values + "</DataArray>\n";
}

/// An XML file with one piece of eight points. `attributes` stand in the element of the kind, `piece` in that of the
/// piece.
std::string xml(const std::string& kind, const std::string& attributes, const std::string& piece,
                const std::string& body) {
  return "<?xml version=\"1.0\"?>\n<VTKFile type=\"" + kind + "\" version=\"0.1\" byte_order=\"LittleEndian\">\n<" +
         kind + attributes + "><Piece " + piece + ">\n<PointData>\n" + array("Float32", "s", "0 1 2 3 4 5 6 7") +
         array("Float64", "v", cube, 3) + "</PointData>\n" + body + "</Piece></" + kind + ">\n</VTKFile>\n";
}

std::string xmlCells(const std::string& element, const std::string& connectivity, const std::string& offsets,
                     const std::string& types = {}) {
  return "<" + element + ">" + array("Int64", "connectivity", connectivity) + array("Int64", "offsets", offsets) +
         (types.empty() ? "" : array("UInt8", "types", types)) + "</" + element + ">\n";
}

const std::string xmlPoints = "<Points>" + array("Float32", "p", cube, 3) + "</Points>\n";

void addLegacy(std::vector<meshtest::SampleFile>& files) {
  files.push_back(
      {"points.vtk", legacy("STRUCTURED_POINTS", "DIMENSIONS 2 2 2\nORIGIN 0 0 0\nSPACING 1 1 1\n" + legacySets(1))});
  files.push_back(
      {"sheet.vtk", legacy("STRUCTURED_POINTS", "DIMENSIONS 1 4 2\nORIGIN 0 0 0\nSPACING 1 1 1\n" + legacySets(3))});
  files.push_back(
      {"rectilinear.vtk",
       legacy("RECTILINEAR_GRID", "DIMENSIONS 2 2 2\nX_COORDINATES 2 float\n0 1\nY_COORDINATES 2 float\n0 1\n"
                                  "Z_COORDINATES 2 double\n0 1\n" +
                                      legacySets(1))});
  files.push_back(
      {"structured.vtk", legacy("STRUCTURED_GRID", "DIMENSIONS 2 2 2\nPOINTS 8 float\n" + cube + legacySets(1))});
  files.push_back(
      {"unstructured.vtk", legacy("UNSTRUCTURED_GRID", "POINTS 8 float\n" + cube +
                                                           "CELLS 3 19\n8 0 1 3 2 4 5 7 6\n4 0 1 2 4\n4 3 1 2 7\n"
                                                           "CELL_TYPES 3\n12 10 10\n" +
                                                           legacySets(3))});
  files.push_back({"polygons.vtk", legacy("POLYDATA", "POINTS 8 float\n" + cube +
                                                          "VERTICES 1 2\n1 0\nLINES 1 4\n3 0 1 3\nPOLYGONS 3 14\n"
                                                          "3 0 1 2\n4 0 1 3 2\n4 4 5 7 6\nTRIANGLE_STRIPS 1 5\n"
                                                          "4 0 1 4 5\n" +
                                                          legacySets(6))});
  files.push_back({"field.vtk", legacy("FIELD f 1", "a 1 2 float\n1 2\n")});
}

void addXml(std::vector<meshtest::SampleFile>& files) {
  const std::string extent = "Extent=\"0 1 0 1 0 1\"";
  files.push_back({"grid.vtu", xml("UnstructuredGrid", "", "NumberOfPoints=\"8\" NumberOfCells=\"2\"",
                                   xmlPoints + xmlCells("Cells", "0 1 3 2 4 5 7 6 0 1 2 4", "8 12", "12 10"))});
  files.push_back(
      {"polygons.vtp", xml("PolyData", "",
                           "NumberOfPoints=\"8\" NumberOfVerts=\"0\" NumberOfLines=\"1\" NumberOfStrips=\"1\" "
                           "NumberOfPolys=\"2\"",
                           xmlPoints + xmlCells("Lines", "0 1 3", "3") + xmlCells("Strips", "0 1 4 5", "4") +
                               xmlCells("Polys", "0 1 2 0 1 3 2", "3 7"))});
  files.push_back({"grid.vts", xml("StructuredGrid", " Whole" + extent, extent, xmlPoints)});
  files.push_back({"grid.vtr", xml("RectilinearGrid", " Whole" + extent, extent,
                                   "<Coordinates>" + array("Float32", "x", "0 1") + array("Float32", "y", "0 1") +
                                       array("Float32", "z", "0 1") + "</Coordinates>\n")});
  files.push_back(
      {"image.vti", xml("ImageData", " Whole" + extent + " Origin=\"0 0 0\" Spacing=\"1 1 1\"", extent, "")});
}

void addSurfaces(std::vector<meshtest::SampleFile>& files) {
  files.push_back({"text.ply", "ply\nformat ascii 1.0\ncomment made by hand\nelement vertex 4\nproperty float x\n"
                               "property float y\nproperty float z\nproperty uchar red\nproperty uchar green\n"
                               "property uchar blue\nelement face 2\nproperty list uchar int vertex_indices\n"
                               "end_header\n0 0 0 1 2 3\n1 0 0 4 5 6\n0 1 0 7 8 9\n1 1 0 7 8 9\n3 0 1 2\n3 1 3 2\n"});
  std::string binary = "ply\nformat binary_little_endian 1.0\nelement vertex 3\nproperty uchar x\nproperty uchar y\n"
                       "property uchar z\nelement face 1\nproperty list uchar uchar vertex_indices\nend_header\n";
  for (const int byte : {0, 0, 0, 1, 0, 0, 0, 1, 0, 3, 0, 1, 2})
    binary.push_back(static_cast<char>(byte));
  files.push_back({"binary.ply", binary});
  files.push_back({"quads.obj", "# made by hand\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\nvt 0 0\nvn 0 0 1\n"
                                "g one\nf 1/1/1 2/1/1 4/1/1 3/1/1\nf 1 2 3\nl 1 2\n"});
  files.push_back({"text.stl", "solid s\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                               "endloop\nendfacet\nendsolid s\n"});
  files.push_back({"mixed.inp", "# made by hand\n8 2 2 1 0\n1 0 0 0\n2 1 0 0\n3 1 1 0\n4 0 1 0\n5 0 0 1\n6 1 0 1\n"
                                "7 1 1 1\n8 0 1 1\n1 1 hex 1 2 3 4 5 6 7 8\n2 1 tet 1 2 3 5\n2 1 3\ns, m\nv, m\n"
                                "1 0 0 0 0\n2 1 0 0 0\n3 2 0 0 0\n4 3 0 0 0\n5 4 0 0 0\n6 5 0 0 0\n7 6 0 0 0\n"
                                "8 7 0 0 0\n1 1\nc, m\n1 5\n2 6\n"});
}

} // namespace

std::vector<meshtest::SampleFile> meshtest::sampleFiles() {
  std::vector<SampleFile> files;
  files.push_back({"grid.grdecl",
                   "-- made by hand\nTITLE\nTwo cells\nMAPAXES 0 1 0 0 1 0 /\nSPECGRID\n 2 1 1 1 F /\nCOORD\n"
                   "0 0 0 0 0 9  1 0 0 1 0 9  2 0 0 2 0 9\n 0 1 0 0 1 9  1 1 0 1 1 9  2 1 0 2 1 9 /\n"
                   "FAULTS\n 'F' 1 1 1 1 1 1 X /\n/\nNEWTRAN\nZCORN\n 8*0 8*1.5D+00 /\nACTNUM\n 1 0 /\n"
                   "PORO\n 0.25 0.125 /\nSATNUM\n 2*1 /\nEND\n"});
  addLegacy(files);
  addXml(files);
  addSurfaces(files);
  return files;
}
