// Paths: their grammar and their normal form.
#include "outside/xmp/path.h"

#include <gtest/gtest.h>

#include <string>

namespace velto::test {
namespace {

const char* const kDC = wellKnown().dc->uri.data();

TEST(Path, NormalFormNamesEachStepOnce) {
  const struct {
    const char* text;
    const char* normal;
  } cases[] = {
      {"title", "title"},
      {"dc:title", "title"},
      {"a-b.c_1", "a-b.c_1"},
      {"\xC3\xA9t\xC3\xA9", "\xC3\xA9t\xC3\xA9"},
      {"creator[2]", "creator[2]"},
      {"creator[007]", "creator[7]"},
      {"creator[last()]", "creator[last()]"},
      {"Flash/exif:Fired", "Flash/exif:Fired"},
      {"a/xmp:b[1]/dc:c/?xmp:q/?rdf:type", "a/xmp:b[1]/dc:c/?xmp:q/?rdf:type"},
      {"title[?xml:lang='DE-ch']", "title[?xml:lang=\"de-CH\"]"},
      {"title[?xmp:q='it''s']/?xml:lang", "title[?xmp:q=\"it's\"]/?xml:lang"},
      {"a[xmp:f=\"say \"\"]/[\"\"\"]/xmp:g", "a[xmp:f=\"say \"\"]/[\"\"\"]/xmp:g"},
      {"a[xmp:f=\"\"]", "a[xmp:f=\"\"]"},
      {"a[xmp:f='\xE9']", "a[xmp:f=\"\xC3\xA9\"]"},
  };
  Object object;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(pathText(requirePath(object.namespaces, kDC, c.text)), c.normal);
    EXPECT_EQ(pathText(requirePath(object.namespaces, kDC, c.normal)), c.normal);
  }
}

TEST(Path, EveryFaultHasItsError) {
  const struct {
    const char* text;
    ErrorId id;
  } cases[] = {
      {"", ErrorId::kBadName},
      {" 9214", ErrorId::kBadName},
      {"a b", ErrorId::kBadName},
      {"dc:", ErrorId::kBadName},
      {"dc:a:b", ErrorId::kBadName},
      {"xmp:title", ErrorId::kBadSchema},
      {"nobody:title", ErrorId::kBadSchema},
      {"a/nobody:b", ErrorId::kBadSchema},
      {"a/b", ErrorId::kBadPath},
      {"a/?b", ErrorId::kBadPath},
      {"a/", ErrorId::kBadPath},
      {"/a", ErrorId::kBadName},
      {"a/xmp:", ErrorId::kBadName},
      {"a//xmp:b", ErrorId::kBadPath},
      {"a[", ErrorId::kBadPath},
      {"a[]", ErrorId::kBadPath},
      {"a[1", ErrorId::kBadPath},
      {"a[1]b", ErrorId::kBadPath},
      {"a[ 1]", ErrorId::kBadPath},
      {"a[1x]", ErrorId::kBadPath},
      {"a[-1]", ErrorId::kBadPath},
      {"a[0]", ErrorId::kBadIndex},
      {"a[2147483648]", ErrorId::kBadIndex},
      {"a[99999999999999999999999]", ErrorId::kBadIndex},
      {"a[last]", ErrorId::kBadPath},
      {"a[last()", ErrorId::kBadPath},
      {"a[xmp:f]", ErrorId::kBadPath},
      {"a[xmp:f=]", ErrorId::kBadPath},
      {"a[xmp:f=x]", ErrorId::kBadPath},
      {"a[xmp:f='x]", ErrorId::kBadPath},
      {"a[xmp:f='x''", ErrorId::kBadPath},
      {"a[xmp:f='x'", ErrorId::kBadPath},
      {"a[f='x']", ErrorId::kBadPath},
      {"a[?xml:lang='d!']", ErrorId::kBadLanguage},
  };
  Object object;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    Path path;
    const PathProblem* problem = parsePath(object.namespaces, kDC, c.text, path);
    ASSERT_NE(problem, nullptr);
    EXPECT_EQ(problem->id, c.id) << problem->reason;
    EXPECT_THROW(requirePath(object.namespaces, kDC, c.text), ToolkitError);
  }
  EXPECT_THROW(requirePath(object.namespaces, "http://unknown.example/", "a"), ToolkitError);
  EXPECT_THROW(requirePath(object.namespaces, nullptr, "a"), ToolkitError);
  EXPECT_THROW(requirePath(object.namespaces, kDC, nullptr), ToolkitError);
}

}  // namespace
}  // namespace velto::test
