#include <random>
#include <set>

#include <gtest/gtest.h>

#include "district.h"
#include "statementfile.h"

namespace jet::testing {

namespace {

std::string bound(const Translation& translation, const Shape& shape, std::size_t parameter) {
    const base::Value value = boundValue(translation.parameters[parameter], shape.literals);
    return value.isDate() ? value.asDate().iso() : value.asText();
}

/// The statement's only bound value.
std::string onlyBound(std::string_view sql) {
    const Translation translation = translate(sql, sharedDistrict().catalog());
    EXPECT_EQ(translation.parameters.size(), 1U) << translation.text;
    return bound(translation, shapeOf(sql), 0);
}

/// The statement with every text, number and date literal changed to another of its kind and form.
std::string withOtherLiterals(std::string sql, std::mt19937& random) {
    for (std::size_t i = 0; i < sql.size(); ++i) {
        if (sql[i] == '\'') {
            for (++i; i < sql.size() && sql[i] != '\''; ++i) {
                if (std::isalnum(static_cast<unsigned char>(sql[i])) != 0) {
                    sql[i] = static_cast<char>('a' + random() % 26);
                }
            }
        }
    }
    return sql;
}

}  // namespace

TEST(Shape, KeepsLiteralsOutOfTheKey) {
    const Shape a = shapeOf("Select Run.RUN FROM Run WHERE RUN.RUN='R1' AND RUN.INT_ROUTEID = 5;");
    const Shape b =
        shapeOf("Select Run.RUN   FROM Run WHERE RUN.RUN='O''Brien'\nAND RUN.INT_ROUTEID=-7;");
    const Shape c =
        shapeOf("Select Run.RUN FROM Run WHERE RUN.RUN=\"x y\" AND RUN.INT_ROUTEID = 1.5;");
    EXPECT_EQ(a.key, c.key);
    EXPECT_NE(a.key, b.key) << "a minus is no part of its number";
    ASSERT_EQ(b.literals.size(), 2U);
    EXPECT_EQ(b.literals[0], base::Value("O'Brien"));
    EXPECT_EQ(b.literals[1], base::Value(7));
    EXPECT_EQ(c.literals[1], base::Value(1.5));
}

TEST(Shape, TellsWhatALiteralsContentDecides) {
    const auto key = [](std::string_view sql) { return shapeOf(sql).key; };
    EXPECT_NE(key("X = 'a'"), key("X = ' '"));
    EXPECT_EQ(key("X = ''"), key("X = '  '"));
    EXPECT_NE(key("X LIKE 'a%'"), key("X LIKE '%a'"));
    EXPECT_EQ(key("X LIKE 'a%'"), key("X LIKE 'bcd%'"));
    EXPECT_NE(key("SELECT X ORDER BY 1"), key("SELECT X ORDER BY 2"));
    EXPECT_NE(key("SELECT TOP 1 X"), key("SELECT TOP 2 X"));
    EXPECT_NE(key("[a] b"), key("[a b]"));
    EXPECT_NE(key("A<=B"), key("A< =B"));
    EXPECT_NE(key("A='x' OR B='x'"), key("A='x' OR B='y'"));
}

TEST(Shape, OneTranslationServesAllStatementsOfAShape) {
    std::mt19937 random(3);  // NOLINT: the same cases every time
    int same = 0;
    for (const Block& block : readStatements()) {
        for (const Step& step : block) {
            const std::string other = withOtherLiterals(step.sql, random);
            if (!step.error.empty() || shapeOf(step.sql).key != shapeOf(other).key) {
                continue;
            }
            ++same;
            const Translation a = translate(step.sql, sharedDistrict().catalog());
            const Translation b = translate(other, sharedDistrict().catalog());
            EXPECT_EQ(a.text, b.text);
            ASSERT_EQ(a.parameters.size(), b.parameters.size());
            for (std::size_t i = 0; i < a.parameters.size(); ++i) {
                EXPECT_EQ(a.parameters[i].literal, b.parameters[i].literal) << step.sql;
                EXPECT_EQ(a.parameters[i].binding, b.parameters[i].binding) << step.sql;
            }
        }
    }
    EXPECT_GT(same, 80);
}

TEST(Shape, BindsLiteralsAsTheirColumnsNeedThem) {
    for (const auto& [set, value] : {std::pair{"SCHOOL = '   '", " "},
                                     {"SCHOOL = ''", " "},
                                     {"SCHOOL = 12", "12"},
                                     {"COMMENT = 'x  '", "x  "},
                                     {"OverFill = 2.5", "2"},
                                     {"OverFill = '3'", "3"},
                                     {"ACTIVE = -1", "True"},
                                     {"BELLTIME = '8:05 am'", "1899-12-30 08:05:00"},
                                     {"BELLTIME = 0.5", "1899-12-30 12:00:00"}}) {
        EXPECT_EQ(onlyBound(std::string("UPDATE RUN SET ") + set), value);
    }
    EXPECT_EQ(onlyBound("SELECT RUN.RUN FROM RUN WHERE RUN.RUN = 'R1  '"), "R1");
    EXPECT_THROW((void)onlyBound("UPDATE RUN SET OverFill = 'many'"), base::RunTimeError);
}

}  // namespace jet::testing
