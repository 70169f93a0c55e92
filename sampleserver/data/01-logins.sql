-- Logins beside sa. What each may enter stands in the scripts of the databases.
EXEC sp_addlogin 'clerk', 'clerk'
EXEC sp_addlogin 'auditor', 'auditor', 'master'
GO
