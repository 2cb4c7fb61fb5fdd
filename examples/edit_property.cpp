// Reads an image file's XMP object, sets the rating in it and prints it as a packet. The file itself does not change.
//
//   edit_property photo.jpg 5
#include <exception>
#include <iostream>
#include <lxbridge/xmp.hpp>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: edit_property FILE RATING\n";
    return 2;
  }
  try {
    const lxbridge::Library library;
    const lxbridge::Interchange photo(argv[1]);
    lxbridge::XmpView xmp = photo.Xmp();
    std::cerr << "the rating was " << xmp.Get(LX_XMP_NS_XMP, "Rating").value_or("not set") << '\n';
    xmp.Set(LX_XMP_NS_XMP, "Rating", argv[2]);
    std::cout << xmp.Serialize() << '\n';
  } catch (const std::exception& error) {
    std::cerr << "edit_property: " << error.what() << '\n';
    return 1;
  }
}
