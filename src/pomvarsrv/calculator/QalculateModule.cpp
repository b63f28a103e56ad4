// The calculator module: libqalculate behind the one C function the server looks up
// (search/CalculatorModule.h). It is loaded on the first query that looks like an expression, so
// the library and its definitions cost the server nothing until then.
#include "pomvarsrv/search/CalculatorModule.h"

#include <libqalculate/qalculate.h>

#include <cstring>
#include <string>

namespace {

// The one calculator, made on the first call (on the server's calculator thread, as every call).
Calculator& oneCalculator()
{
    static Calculator* instance = [] {
        auto* made = new Calculator();
        // The definitions installed with the library; exchange rates are never fetched.
        made->loadGlobalDefinitions();
        made->setExchangeRatesWarningEnabled(false);
        // Typed text must never run a program: no shell command, no plot through gnuplot.
        for (const char* name : { "command", "plot" })
            if (MathFunction* function = made->getActiveFunction(name))
                function->setActive(false);
        return made;
    }();
    return *instance;
}

// A number, a quantity in units, or such terms combined: not a symbol, a function left unsolved,
// a date, a vector, a comparison's text, nor money (its rates would be old, or fetched).
bool isNumeric(const MathStructure& value)
{
    switch (value.type()) {
        case STRUCT_NUMBER:
            return !value.number().isUndefined();
        case STRUCT_UNIT:
            return !value.unit()->isCurrency();
        case STRUCT_MULTIPLICATION:
        case STRUCT_ADDITION:
        case STRUCT_POWER:
        case STRUCT_NEGATE:
        case STRUCT_DIVISION:
        case STRUCT_INVERSE:
            for (std::size_t i = 0; i < value.size(); ++i)
                if (!isNumeric(value[i]))
                    return false;
            return value.size() > 0;
        default:
            return false;
    }
}

void copy(const std::string& text, char* into, std::size_t size)
{
    if (size == 0)
        return;
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(into, text.data(), length);
    into[length] = '\0';
}

} // namespace

extern "C" __attribute__((visibility("default"))) int pomvar_calculate(const char* expression,
                                                                       int timeoutMs,
                                                                       char* answer,
                                                                       std::size_t answerSize,
                                                                       char* readAs,
                                                                       std::size_t readAsSize)
{
    Calculator& calc = oneCalculator();
    calc.clearMessages();
    calc.resetExchangeRatesUsed();
    EvaluationOptions evaluation = default_user_evaluation_options;
    evaluation.approximation = APPROXIMATION_APPROXIMATE;
    evaluation.parse_options.unknowns_enabled = false;
    evaluation.mixed_units_conversion = MIXED_UNITS_CONVERSION_NONE;
    MathStructure result, parsed;
    const std::string text = calc.unlocalizeExpression(expression, evaluation.parse_options);
    // In this thread under a time limit: the calculate() taking a time waits for a thread of its
    // own in steps of 10 ms, longer than most answers take.
    calc.startControl(timeoutMs);
    result = calc.calculate(text, evaluation, &parsed);
    const bool aborted = calc.aborted();
    calc.stopControl();
    if (aborted)
        return 0;
    for (const CalculatorMessage* message = calc.message(); message; message = calc.nextMessage())
        if (message->type() == MESSAGE_ERROR)
            return 0;
    if (calc.exchangeRatesUsed() || !isNumeric(result))
        return 0;
    PrintOptions print = default_print_options;
    print.use_unicode_signs = true;
    print.interval_display = INTERVAL_DISPLAY_SIGNIFICANT_DIGITS;
    copy(calc.print(result, timeoutMs, print), answer, answerSize);
    copy(calc.print(parsed, timeoutMs, print), readAs, readAsSize);
    return 1;
}
