#include "linux/AdministratorRights/CommandWords.h"

#include <gtest/gtest.h>

using Words = std::vector<std::string>;

TEST( CommandWords, AreThoseOfAShellThatExpandsNothing )
{
    struct Row
    {
        char const* commandLine;
        Words words;
    };

    Row const rows[] = {
        { "/usr/share/x.sh -stop", { "/usr/share/x.sh", "-stop" } },
        { " \t/a \t -b ", { "/a", "-b" } },
        { "/opt/My Panel/x.sh -stop", { "/opt/My", "Panel/x.sh", "-stop" } },
        { "/My\\ Panel/x.sh", { "/My Panel/x.sh" } },
        { "/a\\;b\\&c\\$d\\\\e", { "/a;b&c$d\\e" } },
        { "/a\\\nb", { "/ab" } },
        { "'/a \"$b\" \\ `;\n' -c", { "/a \"$b\" \\ `;\n", "-c" } },
        { "\"/a b;|'c\"", { "/a b;|'c" } },
        { R"("\$\`\"\\\a")", { R"($`"\\a)" } },
        { "\"a\\\nb\"", { "ab" } },
        { "/a'b c'\"d e\"f", { "/ab cd ef" } },
        { "/a '' \"\"", { "/a", "", "" } },
        { "/a*b?[c]{d,e}!#f~g", { "/a*b?[c]{d,e}!#f~g" } },
        { "/\xc3\xa4\xff -b", { "/\xc3\xa4\xff", "-b" } },
    };
    for ( Row const& row : rows )
        EXPECT_EQ( SplitIntoWords( row.commandLine ), row.words ) << row.commandLine;
}

TEST( CommandWords, AreNoneForWhatIsNotOneSimpleConstantCommand )
{
    char const* const rows[] = { "", " \t ", "/a 'b", "/a\" -b", "/a \"b\\\"", "/a \\", "\"/a\\",
        "/a\n/b", "/a;/b -stop", "/a & /b", "/a|/b", "/a >/etc/passwd", "/a </b", "/a (b", "/a)",
        "/a $b", "/a \"$b\"", "/a `b`", "/a \"`b\"", "/opt/a #b/x.sh -stop", "~root/a" };
    for ( char const* commandLine : rows )
        EXPECT_EQ( SplitIntoWords( commandLine ), std::nullopt ) << commandLine;
    EXPECT_EQ( SplitIntoWords( std::string_view( "/a\0b", 4 ) ), std::nullopt );
}
