#pragma once

/// Arithmetic on amounts and quantities, as a person would do it on paper.

/// A number rounded half away from zero. What is half a unit is decided by the number's nearest text of 15 digits:
/// 1.005 is held as 1.00499.. and becomes 1.01.
double RoundedTo(double number, int decimals);

/// An amount of money in whole cents.
inline double RoundCurrency(double amount) {
    constexpr int cents = 2;
    return RoundedTo(amount, cents);
}

/// Decimals that the cost and the price of a unit keep.
inline constexpr int UnitDecimals = 6;

/// Mark-up of a price over a cost in percent, 2 decimals; 0 without a price or a cost.
double MarkUpOf(double price, double cost);
