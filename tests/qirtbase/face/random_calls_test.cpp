#include "tests/model/ComponentPair.h"
#include "tests/qirtbase/model/DatabaseTestSupport.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

using namespace qir;

namespace {

RC_GTEST_PROP(ComponentProperty, AnyCallsDoWhatAPlainModelOfTheRulesDoes, ()) {
    test::PropertyChoices choices;
    test::ComponentPair pair(choices);
    const int calls = *rc::gen::inRange(0, 150);
    for (int i = 0; i < calls; ++i) {
        pair.callAtRandom();
        pair.compare();
    }
    pair.compareAll();
}

} // namespace
