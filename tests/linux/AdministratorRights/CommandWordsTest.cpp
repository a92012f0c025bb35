#include "linux/AdministratorRights/CommandWords.h"

#include <gtest/gtest.h>

TEST( CommandWords, AreThoseOfAShellThatExpandsNothing )
{
    std::pair<char const*, std::vector<std::string>> const rows[] = {
        { " \t/a \t -b ", { "/a", "-b" } },
        { "/opt/My Panel/x.sh -stop", { "/opt/My", "Panel/x.sh", "-stop" } },
        { "/My\\ Panel/x.sh", { "/My Panel/x.sh" } }, { "/a\\;b\\&c\\$d\\\\e", { "/a;b&c$d\\e" } },
        { "/a\\\nb", { "/ab" } }, { "'/a \"$b\" \\ `;\n' -c", { "/a \"$b\" \\ `;\n", "-c" } },
        { "\"/a b;|'c\"", { "/a b;|'c" } }, { R"("\$\`\"\\\a")", { R"($`"\\a)" } },
        { "\"a\\\nb\"", { "ab" } }, { "/a'b c'\"d e\"f", { "/ab cd ef" } },
        { "/a '' \"\"", { "/a", "", "" } }, { "/a*b?[c]{d,e}!#f~g", { "/a*b?[c]{d,e}!#f~g" } },
        { "/\xc3\xa4\xff -b", { "/\xc3\xa4\xff", "-b" } } };
    for ( auto const& [commandLine, words] : rows )
        EXPECT_EQ( SplitIntoWords( commandLine ), words ) << commandLine;
}

TEST( CommandWords, AreNoneForWhatIsNotOneSimpleConstantCommand )
{
    std::string_view const rows[] = { "", " \t ", "/a 'b", "/a\" -b", "/a \"b\\\"", "/a \\",
        "\"/a\\", "/a\n/b", "/a;/b -stop", "/a & /b", "/a|/b", "/a >/etc/passwd", "/a </b", "/a (b",
        "/a)", "/a $b", "/a \"$b\"", "/a `b`", "/a \"`b\"", "/opt/a #b/x.sh -stop", "~root/a",
        { "/a\0b", 4 } };
    for ( std::string_view const commandLine : rows )
        EXPECT_EQ( SplitIntoWords( commandLine ), std::nullopt ) << commandLine;
}
