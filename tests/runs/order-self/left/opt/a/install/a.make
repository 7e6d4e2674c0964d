include a.dat
for-a:
	@echo "a after $(IS-A_NAME)"
