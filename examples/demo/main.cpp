// SPDX-License-Identifier: BSD-3-Clause
// Draws isosurfaces: of three meshes that the program makes, or of a mesh file. See `Options::usage`.
#include "Options.h"
#include "Picture.h"
#include "Subject.h"

#include <KerrinDataMapping/KoKerrin.h>
#include <Nyx/render/NxOffscreenRenderer.h>

#include <filesystem>
#include <iostream>

namespace {

/// Starts the library and ends it after the last node is gone.
struct Library {
  Library() { KoKerrin::init(); }
  ~Library() { KoKerrin::finish(); }
};

void draw(const Subject& subject, const Options& options, NxOffscreenRenderer& renderer, const std::string& fileName) {
  const double isovalue = options.isovalue.value_or(0.5 * (subject.scalars->getMin() + subject.scalars->getMax()));
  const PictureFacts facts = drawIsosurface(subject, isovalue, renderer, fileName);
  std::cout << "mesh type: " << subject.meshType << '\n'
            << "mesh cells: " << subject.numCells << '\n'
            << "mesh nodes: " << subject.numNodes << '\n'
            << "isovalue: " << isovalue << '\n'
            << "output cells: " << facts.numOutputCells << '\n'
            << "output area: " << facts.outputArea << '\n'
            << "extraction ms: " << facts.extractionMs << '\n'
            << "first frame ms: " << facts.firstFrameMs << '\n'
            << "second frame ms: " << facts.secondFrameMs << '\n'
            << "image: " << fileName << '\n';
}

void run(const Options& options) {
  const Library library;
  NxOffscreenRenderer renderer(NbViewportRegion(1024, 768));
  renderer.setBackgroundColor(NbColorRGBA(1.f, 1.f, 1.f, 1.f));
  renderer.setNumSamples(4);
  renderer.setHeadlight(false); // the graph has a light of its own
  if (!options.file.empty()) {
    const auto subject = readSubject(options);
    draw(*subject, options, renderer, options.output.empty() ? "demo_" + subject->name + ".png" : options.output);
    return;
  }
  std::filesystem::path folder = options.output;
  if (!folder.empty() && !std::filesystem::is_directory(folder))
    throw UsageError("'" + folder.string() + "' is no folder");
  for (const auto make : {makeRegular, makeTetrahedra, makeHexahedra}) {
    const auto subject = make();
    draw(*subject, options, renderer, (folder / ("demo_" + subject->name + ".png")).string());
    std::cout << '\n';
  }
}

} // namespace

int main(int argc, char** argv) {
  try {
    bool help = false;
    const Options options = Options::parse(argc, argv, help);
    if (help)
      std::cout << Options::usage;
    else
      run(options);
  } catch (const UsageError& error) {
    std::cerr << "kerrin_demo: " << error.what() << '\n';
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "kerrin_demo: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
