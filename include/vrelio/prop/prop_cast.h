// Values of one kind from values of another, and from and to text.
#pragma once

#include <vrelio/export.h>
#include <vrelio/prop/prop.h>

#include <string>

/// Convert a value to the kind `id` and write it to `destination`.
///
/// Every real number and every bool becomes any number or bool: cut towards zero, and without a check of
/// the range; complex numbers become complex numbers only. What an integer cannot hold is as
/// `vrel_dt_convert` says; a not-a-number is true. An array gives its shape to an array, which loses its
/// elements; a single value goes to the first element of an array, which has to have one.
///
/// \param source  what is converted.
/// \param[out] destination  an object of the type that `id` stands for.
/// \param id  the kind that is wanted, with the array flag for an array.
/// \throws VrelError (-1) "Invalid cast!" for kinds that nothing is converted between, such as texts and
///   structs, and for an array without a first element; "Cannot cast from array to scalar!"; "Invalid size
///   vector in property array!". An array has its new shape already where the complex numbers of another
///   are refused; in all other cases nothing has changed.
VRELIO_EXPORT void vrel_prop_cast(const VProp& source, void* destination, int id);

/// The text of a number, a bool, a text (in UTF-8), or an array of numbers or bools with blanks between
/// its elements. Numbers have up to 20 significant digits, whatever the locale is; infinity is "Inf", a
/// bool 0 or 1, a complex number "(real,imaginary)".
/// \throws VrelError "Conversion of unknown type to string!" (-1) for what has no such text.
VRELIO_EXPORT std::string vrel_val2string(const VProp& value);

/// A value of the kind `id` from a text such as `vrel_val2string` gives, which is not changed. White space
/// in front of a number is skipped; "Inf", "-Inf" and "NaN" are read in this spelling alone. What follows
/// a number stays unread; an array ends with the first element that has no blank behind it.
///
/// A text that cannot be read gives 0, false or an array without elements, as does a number that is out of
/// range.
/// \throws VrelError "Conversion of string to invalid type!" (-1) for a kind that has no such text.
VRELIO_EXPORT VProp vrel_string2val(std::string& text, int id);
