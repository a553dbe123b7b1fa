#pragma once

/// Small preprocessor helpers.

#define TF_PP_CAT_IMPL(a, b) a##b
/// Pastes two tokens after expanding both.
#define TF_PP_CAT(a, b) TF_PP_CAT_IMPL(a, b)

#define TF_PP_STRINGIZE_IMPL(...) #__VA_ARGS__
/// Makes a string literal of its expanded arguments.
#define TF_PP_STRINGIZE(...) TF_PP_STRINGIZE_IMPL(__VA_ARGS__)

#define TF_PP_EXPAND(...) __VA_ARGS__

#define TF_PP_SECOND_IMPL(a, b, ...) b
#define TF_PP_SECOND(...) TF_PP_SECOND_IMPL(__VA_ARGS__, 0, 0)
#define TF_PP_TUPLE_PROBE(...) ~, 1
/// 1 when the argument is one parenthesized tuple, else 0.
#define TF_PP_IS_TUPLE(x) TF_PP_SECOND(TF_PP_TUPLE_PROBE x)

#define TF_PP_TUPLE_ELEM_0(a, ...) a
#define TF_PP_TUPLE_ELEM_1(a, b, ...) b
#define TF_PP_TUPLE_ELEM_2(a, b, c, ...) c
/// Element index (0 to 2) of a tuple.
#define TF_PP_TUPLE_ELEM(index, tuple) TF_PP_TUPLE_ELEM_APPLY(TF_PP_CAT(TF_PP_TUPLE_ELEM_, index), tuple)
#define TF_PP_TUPLE_ELEM_APPLY(macro, tuple) TF_PP_TUPLE_ELEM_CALL(macro, TF_PP_EXPAND tuple)
#define TF_PP_TUPLE_ELEM_CALL(macro, ...) macro(__VA_ARGS__, ~)
