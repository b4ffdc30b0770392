-- Accounts whose primary group is admin (80) or wheel (0). A scan does not have an account's other groups.
SELECT latest.machine AS machine, accounts.account AS account, accounts.full_name AS full_name, accounts.user_id AS user_id
FROM latest JOIN accounts ON accounts.scan_id = latest.scan_id
WHERE accounts.group_id IN ('80', '0') OR accounts.user_id = '0'
ORDER BY machine, account;
