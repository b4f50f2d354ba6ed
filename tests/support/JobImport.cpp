#include "tests/support/JobImport.h"

#include "tests/support/Convert.h"
#include "tests/support/Files.h"

#if defined(_WIN32)
#include "tests/support/AdoStandIn.h"
#endif

#include <gtest/gtest.h>

namespace convfile::test {

void ImportJob(const std::vector<access::Table>& tables, views::Conversion& result) {
    const TempFolder folder;
    ImportJob(tables, folder.Write("job.tlsv", access::Write(access::Version::Jet4, tables)),
              result);
}

void ImportJob([[maybe_unused]] const std::vector<access::Table>& tables, const std::string& path,
               views::Conversion& result) {
#if defined(_WIN32)
    AdoStandIn ado;
    ado.answer = AnswerFrom(tables);
#endif
    ConvertAs("tlsv", path, result);
}

void ExpectDriverMessage(const std::vector<memory::Message>& messages) {
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].title, "Attenzione!");
    EXPECT_EQ(messages[0].text,
              "Driver di gestione Database non trovato.\nPer scaricarlo si vada nella sezione "
              "\"File ausiliari\" del link sottostante.");
    EXPECT_TRUE(messages[0].hasLink);
    EXPECT_FALSE(messages[0].linkLabel.empty());
    EXPECT_EQ(messages[0].linkTarget.substr(0, 8), "https://");
}

} // namespace convfile::test
